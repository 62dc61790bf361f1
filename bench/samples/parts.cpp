#include "samples/parts.h"

#include <array>
#include <cstdio>

namespace qx::bench {
namespace {

/// Spreads neighbouring numbers over the whole range; different numbers stay different.
std::uint64_t scattered(std::uint64_t number) {
  number += 0x9E3779B97F4A7C15U;
  number = (number ^ (number >> 30U)) * 0xBF58476D1CE4E5B9U;
  number = (number ^ (number >> 27U)) * 0x94D049BB133111EBU;
  return number ^ (number >> 31U);
}

} // namespace

std::string formatted(const char* format, unsigned value) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), format, value);
  return text.data();
}

std::string sampleKey(std::uint32_t number, std::uint32_t kind) {
  const std::uint64_t first = (std::uint64_t{kind} << 33U) + number;
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%016llX%016llX", static_cast<unsigned long long>(scattered(first)),
                static_cast<unsigned long long>(scattered(first + 0x100000000U)));
  return text.data();
}

std::string groupCode(unsigned i) { return formatted("G%02u", i % groups + 1); }
std::string repCode(unsigned i) { return formatted("%04u", 1000 + i % reps); }
std::string paymentCode(unsigned i) { return formatted("Z%u", i % payments + 1); }
std::string bankCode(unsigned i) { return formatted("%08u", 20050000 + 10 * (i % banks)); }
std::string shippingCode(unsigned i) { return formatted("V%u", i % shippings + 1); }

std::string dayIn2026(unsigned i) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%02u.%02u.2026", i % 28 + 1, i / 28 % 12 + 1);
  return text.data();
}

} // namespace qx::bench
