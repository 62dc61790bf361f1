#include "rules/rounding.h"

#include <array>
#include <charconv>
#include <cmath>
#include <stdexcept>

namespace qx {

double throughDecimalText(double number) {
  std::array<char, 40> buffer{};
  const auto written =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::general, 15);
  double read = number;
  std::from_chars(buffer.data(), written.ptr, read);
  return read;
}

double rundenEx(double zahl, double RundenAuf, bool Aufrunden) {
  if (RundenAuf == 0) throw std::domain_error("rundenEx: division by zero, the step is 0");
  const double sign = zahl < 0 ? -1 : 1;
  const double steps = throughDecimalText(std::fabs(zahl)) / RundenAuf;
  // 0.99999999 on purpose: smaller remainders are not rounded up.
  const double raised = steps + (Aufrunden ? 0.99999999 : 0.5);
  return std::trunc(throughDecimalText(raised)) * RundenAuf * sign;
}

} // namespace qx
