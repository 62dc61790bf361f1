// Numbers, keys and codes of made-up jobs.
#pragma once

#include <cstdint>
#include <string>

namespace qx::bench {

// How many codes of a kind there are.
inline constexpr int groups = 8;
inline constexpr int reps = 20;
inline constexpr int payments = 5;
inline constexpr int banks = 50;
inline constexpr int shippings = 4;

/// A printf format for one unsigned number.
std::string formatted(const char* format, unsigned value);

/// A scattered key of 32 characters; different numbers and kinds have different ones.
std::string sampleKey(std::uint32_t number, std::uint32_t kind = 0);

std::string dayIn2026(unsigned i);

std::string groupCode(unsigned i);
std::string repCode(unsigned i);
std::string paymentCode(unsigned i);
std::string bankCode(unsigned i);
std::string shippingCode(unsigned i);

} // namespace qx::bench
