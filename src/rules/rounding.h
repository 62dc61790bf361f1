// Rounding to a multiple of any step, half or always away from zero.
#pragma once

namespace qx {

/// `number` rounded to 15 significant digits, so that binary residues do not decide a result.
double throughDecimalText(double number);

/// Rounds `zahl` to a multiple of `RundenAuf`: half away from zero, or away from zero when `Aufrunden`.
///
/// The result may carry the binary residue of the last multiplication and may be -0. Raises
/// `std::domain_error` when `RundenAuf` is 0.
double rundenEx(double zahl, double RundenAuf, bool Aufrunden);

} // namespace qx
