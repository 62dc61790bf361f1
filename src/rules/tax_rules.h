// Tax keys and their rates.
#pragma once

#include "platform/environment.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace qx {

/// Raised for a pair of tax marks without a usable tax key.
class MissingTaxKey : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// Raised for a tax key whose rate is null or not a number.
class MissingTaxRate : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// Finds tax keys on the session's connection, or on the shared one when there is no session. Database errors
/// reach the caller.
class TaxRules {
public:
  explicit TaxRules(Environment& environment) : environment_(environment) {}

  /// The key of the pair of marks on a day. Only the first eight characters of the time stamp `Datum` count;
  /// blank means the key before any change of rates. Raises `MissingTaxKey` when the pair has no key or one
  /// that is not a 16-bit number.
  std::int16_t GetSteuerschlüssel(std::string_view MwStKZKunde, std::string_view MwStKZArtikel,
                                  std::string_view Datum) const;
  /// The same with the day of the change read beforehand, so that it is the same for all orders of a run.
  std::int16_t keyOf(std::string_view customerMark, std::string_view articleMark, std::string_view stamp,
                     std::string_view changeDay) const;
  /// The rate of a key in percent; 0 when the key is unknown. Raises `MissingTaxRate` for a rate that is null
  /// or not a number.
  double GetSteuerSatz(std::string_view Steuerschlüssel) const;
  /// The day of the change of rates as "yyyymmdd", empty when none is set; also read from dd.mm.yyyy.
  /// Anything else is reported to the diagnostics and counts as none.
  std::string changeDay() const;

private:
  Connection& connection() const;

  Environment& environment_;
};

} // namespace qx
