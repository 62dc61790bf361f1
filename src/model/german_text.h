// The German text forms of numbers and truth values.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qx {

/// Decimal comma, no thousands separator, up to 15 significant digits, "1E-05" where plain digits do not
/// suffice; never "-0".
std::string germanNumber(double number);

/// At least one digit before the comma and exactly `decimals` after it; halves are rounded away from zero:
/// "###0.00" is `germanDecimals(x, 2)`. At most six decimals, else `std::out_of_range` is raised.
std::string germanDecimals(double number, int decimals);

/// Reads what `germanNumber` writes, blanks around it allowed. Null for everything else, a decimal point
/// included.
std::optional<double> parseGermanNumber(std::string_view text);

/// The same for numbers typed into a setting or a profile file: without a comma, a point is the decimal
/// separator.
std::optional<double> parseTypedNumber(std::string_view text);

/// Reads a number entered in a window or pasted from a spreadsheet: like `parseGermanNumber`, but thousands
/// separators are allowed.
std::optional<double> parseEnteredNumber(std::string_view text);

/// "Wahr" or "Falsch".
std::string_view germanBoolean(bool truth);

/// Reads "Wahr", "Falsch", "True", "False" (in any case), "1", "-1" and "0"; null for everything else.
std::optional<bool> parseGermanBoolean(std::string_view text);

/// Both readings of a number with a single point and three digits after it: "1.000" may be 1000 or 1. Null
/// for every other text.
struct NumberReadings {
  double thousands = 0;
  double decimals = 0;
};
std::optional<NumberReadings> readingsOf(std::string_view text);

/// Why a typed number is unusable, to follow the text in a message: "is not a number", "may mean 1000 or 1".
/// Empty for a clear one.
std::string doubtAbout(std::string_view text);

} // namespace qx
