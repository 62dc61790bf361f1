// The order that is being written.
#pragma once

#include "engine/findings.h"
#include "model/date.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace qx {

/// What order lines need to know about their header, job and customer.
struct OrderContext {
  std::int32_t number = 0;
  std::string customer;
  std::string customerTaxMark;
  std::string dateStamp; ///< of the date of receipt; decides the tax key
  Date date{};
  std::string deliveryDate; ///< the header's `Liefertermin`
  std::int32_t jobCost = 0; ///< `KostID` of the job, where cost assignments are used; 0 for none
  std::int32_t customerCost = 0;
  std::string shippingMethod; ///< as written in the header
  std::string paymentMethod;
};

/// What the protocol says about a line.
struct WrittenLine {
  std::string article;
  std::string description;
  double quantity = 0;
  double price = 0;
};

/// The lines of an order so far.
struct WrittenLines {
  std::vector<WrittenLine> lines;
  std::set<std::int32_t> numbers;
  bool anyAccessory = false;
  Findings hints;
};

} // namespace qx
