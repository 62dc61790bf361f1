// The invented company of the demo data: its customers and articles. Everything is derived from the indexes,
// so that every installation gets the same.
#pragma once

#include "platform/database.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace qx::erp::demo {

inline constexpr std::size_t customerCount = 300;
inline constexpr std::size_t productCount = 10;
inline constexpr std::size_t sizeCount = 20;

/// Codes that the demo jobs refer to.
inline constexpr std::string_view collectiveCustomer = "14888"; ///< for one-time customers
inline constexpr std::string_view groupCustomer = "14999";      ///< for orders collected by a rep
inline constexpr std::string_view blockedCustomer = "70013";    ///< blocked for delivery
inline constexpr std::string_view warnedCustomer = "70021";     ///< has reached its first credit limit
inline constexpr std::string_view overdrawnCustomer = "70022";  ///< has reached its second credit limit
inline constexpr std::string_view unionCustomer = "70031";      ///< in another EU country
inline constexpr std::string_view untaxedCustomer = "70033";    ///< has a tax mark without a tax key
inline constexpr std::string_view blockedArticle = "GESPERRT-1";
inline constexpr std::string_view unpricedArticle = "MUSTER-1";
inline constexpr std::string_view wrongPriceArticle = "FEHLPREIS-1"; ///< its price unit is 0
inline constexpr std::string_view accessoryArticle = "ZUB-1";
inline constexpr std::string_view serviceArticle = "DIENST-1"; ///< keeps no stock

struct Customer {
  std::string number;
  std::string searchTerm;
  std::string name;
  std::string department; ///< second name line, often empty
  std::string street;
  std::string country;
  std::string postcode;
  std::string town;
  std::string phone;
  std::string email;
  std::string group;
  std::string rep;
  std::string payment;
  std::string terms;
  std::string shipping;
  std::string priceList; ///< empty for the general prices
  std::string bankCode;
  std::string account;
};

/// The customer of this index; from `customerCount` on they are not in the master data yet.
Customer customer(std::size_t index);

/// The number of an article, from its kind and size.
std::string articleNumber(std::size_t product, std::size_t size);

/// The number as text with leading zeros.
std::string padded(std::size_t number, std::size_t width);

void fillCodes(Connection& connection);
void fillCustomers(Connection& connection);
void fillContracts(Connection& connection);
void fillArticles(Connection& connection);

} // namespace qx::erp::demo
