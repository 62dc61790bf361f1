// The German text forms of numbers and truth values.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qx {

/// Decimal comma, no thousands separator, up to 15 significant digits, "1E-05" where digits would not do;
/// never "-0".
std::string germanNumber(double number);

/// At least one digit before the comma and exactly `decimals` after it; halves go away from zero:
/// "###0.00" is `germanDecimals(x, 2)`. At most six decimals, else `std::out_of_range` is raised.
std::string germanDecimals(double number, int decimals);

/// Reads what `germanNumber` writes, blanks around it allowed. Null for everything else, a decimal point
/// included.
std::optional<double> parseGermanNumber(std::string_view text);

/// The same for numbers that people typed into a setting or a profile file: without a comma, a point counts
/// as one.
std::optional<double> parseTypedNumber(std::string_view text);

/// Reads what people enter into a field of a window or paste there from a spreadsheet: like
/// `parseGermanNumber`, with points between groups of three digits before the comma allowed.
std::optional<double> parseEnteredNumber(std::string_view text);

/// "Wahr" or "Falsch".
std::string_view germanBoolean(bool truth);

/// Reads "Wahr", "Falsch", "True", "False" (in any case), "1", "-1" and "0"; null for everything else.
std::optional<bool> parseGermanBoolean(std::string_view text);

/// What a typed number may mean whose single point has three digits behind it: "1.000" is a thousand to one
/// and one to another. Null for every other text.
struct NumberReadings {
  double thousands = 0;
  double decimals = 0;
};
std::optional<NumberReadings> readingsOf(std::string_view text);

/// Why nobody should calculate with a typed number, as it stands behind the text in a message: "is no
/// number", "may mean 1000 or 1". Empty for one that is clear.
std::string doubtAbout(std::string_view text);

} // namespace qx
