// Protocols of the standalone ERP.
#pragma once

#include "platform/protokoll.h"
#include "platform/session.h"
#include "platform/system.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace qx::erp {

/// Writes protocols as a head with numbered lines: short text column n is `Text`n, the long text is `Memo0`.
/// A failed write keeps the collected line until a new one is begun.
class StandaloneProtokoll final : public Protokoll {
public:
  static constexpr std::size_t shortColumns = 9;

  /// `now` returns the time stamp of a new protocol; protocols are found by its day. `sessionId` becomes part
  /// of its identity.
  StandaloneProtokoll(std::function<DateTime()> now, std::string sessionId);

  std::string CreateProtokoll(Connection& connection, std::string_view title, std::string_view kind,
                              std::string_view list) override;
  bool OpenProtokoll(Connection& connection, std::string_view id) override;
  void AddNewRecord() override;
  void SetField(int kind, int column, std::string_view text) override;
  void UpdateRecord() override;

private:
  struct Line {
    std::array<std::string, shortColumns> texts;
    std::string memo;
  };

  Line& pendingLine();
  std::int64_t nextNumber();

  std::function<DateTime()> now_;
  std::string sessionId_;
  Connection* connection_ = nullptr;
  std::string id_;
  std::optional<Line> line_;
  std::int64_t lastNumber_ = 0;
  std::optional<std::uint64_t> numbersEpoch_; ///< of the connection, in which `lastNumber_` is known
};

} // namespace qx::erp
