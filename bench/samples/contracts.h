// Contract jobs made up by number, and what they refer to.
#pragma once

#include "samples/customers.h"

namespace qx::bench {

inline constexpr int contractKinds = 5;
inline constexpr int contractObjects = 500;

std::string contractKind(unsigned i);
std::string contractObject(unsigned i);
std::string contractNumber(std::uint32_t number);

/// A single contract of sample customer `number`. Its text is that of its object.
SampleJob sampleContract(std::uint32_t number);

} // namespace qx::bench
