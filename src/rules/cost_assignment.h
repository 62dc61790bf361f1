// Pairs of cost centre and cost unit under their numbers.
#pragma once

#include "platform/environment.h"
#include "settings/options.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qx {

/// The two dimensions of a cost assignment; empty where one is not given.
struct CostPair {
  std::string Kostenstelle;
  std::string Kostentraeger;
};

/// Finds, creates and checks cost assignments on the shared connection. Database errors reach the caller.
class CostAssignment {
public:
  explicit CostAssignment(Environment& environment) : environment_(environment) {}

  /// 0 when the pair of the number has every dimension that the document kind requires, -1 when one is
  /// missing; with `ShowMessage` a box then names the first missing one. A kind without a rule requires
  /// nothing.
  std::int32_t CheckKostzuord(std::string_view Belegart, std::int32_t KostID, bool ShowMessage) const;
  /// The pair of a number; both empty when the number is unknown or 0.
  CostPair read(std::int32_t KostID) const;
  /// A dimension of blanks only counts as empty.
  static CostPair trimmed(const CostPair& pair);
  /// The number of a pair, ignoring outer blanks; null when the pair has none.
  std::optional<std::int32_t> find(const CostPair& pair) const;
  /// The same, but creates a number for a pair that has none.
  std::int32_t findOrCreate(const CostPair& pair) const;

private:
  std::unique_ptr<Recordset> openPair(const CostPair& pair) const;
  std::int16_t ruleOf(std::string_view documentKind) const;
  void showMissing(const TextOption& labelOption) const;

  Environment& environment_;
};

} // namespace qx
