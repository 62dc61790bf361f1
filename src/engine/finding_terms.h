// The rules that a job can break, with the terms of run, dialogs and programs for each.
#pragma once

#include "model/job_codes.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace qx {

/// A rule of checking or writing jobs; each has one row of terms.
enum class Rule : std::uint8_t {
  // Jobs of any kind.
  EarlierReasons,
  CheckFailed,
  ProcessingFailed,
  TaxIdMissing,
  GrossPricesAbroad,
  // Check of a customer.
  CustomerNumberMissing,
  CustomerIsNew,
  CustomerGroup,
  CustomerSalesRep,
  CustomerShippingMethod,
  CustomerPaymentMethod,
  CustomerPaymentTerms,
  CustomerBank,
  CustomerName1,
  CustomerName2,
  CustomerName3,
  CustomerStreet,
  CustomerCountry,
  CustomerPostCode,
  CustomerCity,
  CustomerDelivery,
  CustomerInvoice,
  CustomerAccount,
  CustomerDeliveryKey,
  CustomerInvoiceKey,
  CustomerContractWarnings,
  CustomerContractErrors,
  // Only in the dialogs of customers and orders.
  PriceList,
  Currency,
  EntryCurrency,
  BankName,
  OtherFindings,
  // Refusal of a customer.
  CustomerGroupRefused,
  CustomerSalesRepRefused,
  CustomerPaymentMethodRefused,
  CustomerBankRefused,
  CustomerCurrencyRefused,
  CustomerReceiptDate,
  // Hints at a customer.
  CustomerEmptied,
  CustomerUnwritten,
  CustomerAddressUnstored,
  CustomerAbroad,
  // Check of a contract.
  ContractKind,
  ContractQuantity,
  SingleContractQuantity,
  ContractState,
  ContractDate,
  ContractDateMissing,
  ContractBegin,
  ContractBeginMissing,
  ContractObject,
  ContractInterval,
  // Refusal of a contract.
  ContractCustomerRefused,
  ContractKindRefused,
  ContractRelationRefused,
  ContractObjectRefused,
  ContractPriceTooLarge,
  ContractPriceNoNumber,
  ContractQuantityTooLarge,
  ContractQuantityNoNumber,
  // Check of an order.
  OrderNote,
  OrderSalesRep,
  OrderShippingMethod,
  OrderPaymentMethod,
  OrderMarkZB,
  OrderMarkZA,
  OrderMarkMK,
  OrderPaymentTerms,
  OrderBank,
  OrderDeliveryKey,
  OrderInvoiceKey,
  OrderAccount,
  OrderCustomer,
  OrderDelivery,
  OrderInvoice,
  OrderCreditLimit1,
  OrderCreditLimit2,
  OrderCreditLimitDoubtful,
  OrderNoPositions,
  OrderPriceFailed,
  OrderPriceMissing,
  OrderPriceDiffers,
  OrderCostAssignment,
  OrderStock,
  OrderArticle,
  // Only in the dialog of an order.
  OrderName1,
  OrderName2,
  OrderName3,
  OrderStreet,
  OrderCountry,
  OrderPostCode,
  OrderCity,
  OrderDeliveryLines,
  OrderInvoiceLines,
  CustomersShippingMethod,
  CustomersPaymentMethod,
  OrderQuantityMissing,
  OrderUnitUnlisted,
  // Refusal of an order.
  OrderNumberNone,
  OrderNumberInUse,
  OrderCustomerRefused,
  OrderDeliveryStop,
  OrderReceiptDate,
  OrderShippingMethodRefused,
  OrderPaymentMethodRefused,
  OrderPaymentTermsRefused,
  OrderSalesRepRefused,
  OrderNoPositionsRefused,
  OrderArticleRefused,
  OrderArticleBlocked,
  OrderPriceRefused,
  OrderPriceTooLarge,
  OrderQuantityTooLarge,
  OrderDiscountTooLarge,
  OrderPriceUnitTooLarge,
  OrderCostNumber,
  OrderTotalTooLarge,
  OrderNoPositionNumber,
  OrderTaxKey,
  OrderTaxRate,
  OrderTaxChangeDay,
  // Hints at an order.
  OrderCurrency,
  OrderExchangeRate,
  OrderCustomerWaits,
  OrderPriceReplaced,
};
inline constexpr Rule lastRule = Rule::OrderPriceReplaced;

/// The terms of a dialog for a broken rule.
struct DialogTerms {
  std::string_view code;    ///< short code of the findings list; empty when no dialog shows it
  std::string_view control; ///< object name of the control concerned; a grid for positions
  std::string_view text{};  ///< empty: the text of the run
};

/// In texts "{value}", "{stored}" and "{field}" are replaced by those of the finding, "{value.00}" by a
/// number with two decimals.
struct RuleTerms {
  Rule rule{};
  std::string_view code; ///< for programs; never changes
  CheckStatus severity = CheckStatus::Clean;
  std::string_view run;   ///< as written to `Fehlertext` and the protocol; empty: none
  std::string_view field; ///< property of the job; empty for none, or when the finding names it
  DialogTerms dialog{};
  std::string_view remedy; ///< what to do, in German
  std::string_view note{}; ///< where run and dialog differ on purpose, or when it is checked; in German
  bool counts = true;      ///< whether it raises the status; false for what only a dialog shows
  bool inOwnMode = false;  ///< counts only in installations with customer-specific values

  constexpr RuleTerms noted(std::string_view text) const {
    RuleTerms noted = *this;
    noted.note = text;
    return noted;
  }
  constexpr RuleTerms countingInOwnMode() const {
    RuleTerms counting = *this;
    counting.inOwnMode = true;
    return counting;
  }
  constexpr bool countsWhere(bool customerSpecific) const {
    return counts && (customerSpecific || !inOwnMode);
  }
};

/// In the order of `Rule`.
std::span<const RuleTerms> allTerms();
const RuleTerms& terms(Rule rule);

/// The pattern of a row's text with "..." for the values.
std::string withoutValues(const RuleTerms& row, std::string_view pattern);

/// Whether the text, or its first line, is that of a run or dialog for this rule, with any values. False for
/// a rule whose text is only its values.
bool says(const RuleTerms& row, std::string_view text);

} // namespace qx
