#include "sender_advice.h"

namespace qx {

// No default: a rule without advice does not compile.
Advice adviceOn(Rule rule) {
  switch (rule) {
  case Rule::TaxIdMissing:
  case Rule::CustomerNumberMissing:
  case Rule::CustomerAccount:
  case Rule::CustomerDeliveryKey:
  case Rule::CustomerInvoiceKey:
  case Rule::CustomerReceiptDate:
  case Rule::CustomerEmptied:
  case Rule::CustomerAddressUnstored:
  case Rule::ContractQuantity:
  case Rule::SingleContractQuantity:
  case Rule::ContractState:
  case Rule::ContractDate:
  case Rule::ContractDateMissing:
  case Rule::ContractBegin:
  case Rule::ContractBeginMissing:
  case Rule::ContractInterval:
  case Rule::ContractPriceTooLarge:
  case Rule::ContractPriceNoNumber:
  case Rule::ContractQuantityTooLarge:
  case Rule::ContractQuantityNoNumber:
  case Rule::OrderMarkZB:
  case Rule::OrderMarkZA:
  case Rule::OrderMarkMK:
  case Rule::OrderDeliveryKey:
  case Rule::OrderInvoiceKey:
  case Rule::OrderAccount:
  case Rule::OrderDelivery:
  case Rule::OrderInvoice:
  case Rule::OrderNoPositions:
  case Rule::OrderCostAssignment:
  case Rule::OrderQuantityMissing:
  case Rule::OrderReceiptDate:
  case Rule::OrderNoPositionsRefused:
  case Rule::OrderPriceTooLarge:
  case Rule::OrderQuantityTooLarge:
  case Rule::OrderDiscountTooLarge:
  case Rule::OrderPriceUnitTooLarge:
  case Rule::OrderCostNumber:
  case Rule::OrderTotalTooLarge:
  case Rule::OrderNoPositionNumber:
  case Rule::OrderCurrency:
    return Advice::Mend;
  case Rule::CustomerGroup:
  case Rule::CustomerSalesRep:
  case Rule::CustomerShippingMethod:
  case Rule::CustomerPaymentMethod:
  case Rule::CustomerPaymentTerms:
  case Rule::CustomerBank:
  case Rule::PriceList:
  case Rule::Currency:
  case Rule::EntryCurrency:
  case Rule::BankName:
  case Rule::CustomerGroupRefused:
  case Rule::CustomerSalesRepRefused:
  case Rule::CustomerPaymentMethodRefused:
  case Rule::CustomerBankRefused:
  case Rule::CustomerCurrencyRefused:
  case Rule::ContractKind:
  case Rule::ContractObject:
  case Rule::ContractKindRefused:
  case Rule::ContractRelationRefused:
  case Rule::ContractObjectRefused:
  case Rule::OrderSalesRep:
  case Rule::OrderShippingMethod:
  case Rule::OrderPaymentMethod:
  case Rule::OrderPaymentTerms:
  case Rule::OrderBank:
  case Rule::OrderArticle:
  case Rule::OrderUnitUnlisted:
  case Rule::OrderShippingMethodRefused:
  case Rule::OrderPaymentMethodRefused:
  case Rule::OrderPaymentTermsRefused:
  case Rule::OrderSalesRepRefused:
  case Rule::OrderArticleRefused:
  case Rule::OrderArticleBlocked:
    return Advice::Codes;
  case Rule::ContractCustomerRefused:
  case Rule::OrderCustomer:
  case Rule::OrderCustomerRefused:
    return Advice::Customer;
  case Rule::OrderPriceMissing:
  case Rule::OrderPriceDiffers:
  case Rule::OrderPriceReplaced:
    return Advice::Prices;
  case Rule::CustomerContractWarnings:
  case Rule::CustomerContractErrors:
    return Advice::Contracts;
  case Rule::EarlierReasons:
  case Rule::CustomerIsNew:
  case Rule::CustomerName1:
  case Rule::CustomerName2:
  case Rule::CustomerName3:
  case Rule::CustomerStreet:
  case Rule::CustomerCountry:
  case Rule::CustomerPostCode:
  case Rule::CustomerCity:
  case Rule::CustomerDelivery:
  case Rule::CustomerInvoice:
  case Rule::OtherFindings:
  case Rule::OrderNote:
  case Rule::OrderCreditLimit1:
  case Rule::OrderCreditLimit2:
  case Rule::OrderStock:
  case Rule::OrderName1:
  case Rule::OrderName2:
  case Rule::OrderName3:
  case Rule::OrderStreet:
  case Rule::OrderCountry:
  case Rule::OrderPostCode:
  case Rule::OrderCity:
  case Rule::OrderDeliveryLines:
  case Rule::OrderInvoiceLines:
  case Rule::OrderDeliveryStop:
    return Advice::Clerk;
  case Rule::CheckFailed:
  case Rule::ProcessingFailed:
  case Rule::GrossPricesAbroad:
  case Rule::CustomerAbroad:
  case Rule::OrderCreditLimitDoubtful:
  case Rule::OrderPriceFailed:
  case Rule::CustomersShippingMethod:
  case Rule::CustomersPaymentMethod:
  case Rule::OrderNumberNone:
  case Rule::OrderNumberInUse:
  case Rule::OrderPriceRefused:
  case Rule::OrderTaxKey:
  case Rule::OrderTaxRate:
  case Rule::OrderTaxChangeDay:
  case Rule::OrderExchangeRate:
    return Advice::Erp;
  case Rule::CustomerUnwritten:
  case Rule::OrderCustomerWaits:
    return Advice::Nothing;
  }
  return Advice::Nothing;
}

std::string_view wordOf(Advice advice) {
  switch (advice) {
  case Advice::Mend:
    return "mend";
  case Advice::Codes:
    return "agree on codes";
  case Advice::Customer:
    return "send the customer";
  case Advice::Prices:
    return "agree on prices";
  case Advice::Contracts:
    return "see the contracts";
  case Advice::Clerk:
    return "wait for the clerk";
  case Advice::Erp:
    return "tell the ERP's people";
  case Advice::Nothing:
    break;
  }
  return "nothing";
}

} // namespace qx
