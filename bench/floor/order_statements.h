// The statements that checking and writing one order take.
#pragma once

#include "floor/database.h"

namespace qx::bench {

/// Prepared once, used for every order. Each is named for what it reads or writes.
struct OrderStatements {
  explicit OrderStatements(Database& database);

  Statement job, jobByKey;
  Statement repExists, shippingExists, paymentExists, bankExists, customerExists;
  Statement positions, articleUnit, otherUnit, customerList, salesPrices, articleExists;
  Statement activeRange, rangeState, drawNumber;
  Statement customer, rep, bank, currency, clerk, insertHeader;
  Statement orderedPositions, article, purchasePrices, taxKey, taxRate;
  Statement insertLine, insertPurchasedLine;
  Statement stampCustomer, writtenLines, setTotals, insertIndex, finishJob, paymentText, addLine;
};

} // namespace qx::bench
