// Order jobs made up by number, and the articles that they name.
#pragma once

#include "samples/customers.h"

#include <vector>

namespace qx::bench {

inline constexpr std::uint32_t articleCount = 1000;
inline constexpr int positionsAnOrder = 5;

struct SampleOrder {
  SampleJob head;
  std::vector<SampleJob> positions;
};

/// An order of one of the first `customers` sample customers. Every second position names its unit.
SampleOrder sampleOrder(std::uint32_t number, std::uint32_t customers);

/// Every fourth article has the reduced tax, every second one a supplier.
struct SampleArticle {
  std::string number;
  std::string text;
  std::string taxMark;
  std::string supplier;
  double weight = 0;
  int cents = 0;         ///< the price from 1 piece
  int centsFromTen = 0;  ///< the price from 10 pieces
  int purchaseCents = 0; ///< what the supplier takes
};
SampleArticle sampleArticle(std::uint32_t number);

} // namespace qx::bench
