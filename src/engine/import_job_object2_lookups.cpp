// The lookup and rule members of the engine object that the rules do not offer in this form.
#include "engine/import_job_object2.h"

#include "rules/cost_assignment.h"
#include "rules/dates.h"
#include "rules/price_component.h"
#include "rules/rounding.h"
#include "rules/stock.h"
#include "rules/tax_rules.h"
#include "store/job_file_banner.h"

namespace qx {

bool ImportJobObject2::GetAdressDaten(std::string_view Kundennummer, std::string_view AdressNummer,
                                      std::string& Bez1, std::string& Bez2, std::string& Bez3,
                                      std::string& Strasse, std::string& Land, std::string& PLZ,
                                      std::string& Ort) const {
  const auto found = CustomerAddresses::GetAdressDaten(Kundennummer, AdressNummer);
  const Adresse address = found.value_or(Adresse());
  Bez1 = address.Bez1;
  Bez2 = address.Bez2;
  Bez3 = address.Bez3;
  Strasse = address.Strasse;
  Land = address.Land;
  PLZ = address.PLZ;
  Ort = address.Ort;
  return found.has_value();
}

bool ImportJobObject2::AddAdressDaten(std::string_view Kundennummer, std::string_view AdressNummer,
                                      std::string_view Bez1, std::string_view Bez2, std::string_view Bez3,
                                      std::string_view Strasse, std::string_view Land, std::string_view PLZ,
                                      std::string_view Ort) const {
  const Adresse address{std::string(Bez1), std::string(Bez2), std::string(Bez3), std::string(Strasse),
                        std::string(Land), std::string(PLZ),  std::string(Ort)};
  return CustomerAddresses::AddAdressDaten(Kundennummer, AdressNummer, address);
}

bool ImportJobObject2::GetTextbaustein(std::string_view Textart, std::string_view TextNummer,
                                       std::string_view Zusatztext, std::string_view SprachKZ,
                                       std::string& Kurztext, std::string& Langtext, std::string& WoDrucken,
                                       std::string& Schriftart, std::int16_t& Schriftgröße,
                                       std::string& Schriftstil) const {
  const auto found = MasterData::GetTextbaustein(Textart, TextNummer, Zusatztext, SprachKZ);
  const Textbaustein block = found.value_or(Textbaustein());
  Kurztext = block.Kurztext;
  Langtext = block.Langtext;
  WoDrucken = block.WoDrucken;
  Schriftart = block.Schriftart;
  Schriftgröße = block.Schriftgröße;
  Schriftstil = block.Schriftstil;
  return found.has_value();
}

std::int16_t ImportJobObject2::GetSteuerschlüssel(std::string_view MwStKZKunde,
                                                  std::string_view MwStKZArtikel,
                                                  std::string_view Datum) const {
  return TaxRules(environment_).GetSteuerschlüssel(MwStKZKunde, MwStKZArtikel, Datum);
}

double ImportJobObject2::GetSteuerSatz(std::string_view Steuerschlüssel) const {
  return TaxRules(environment_).GetSteuerSatz(Steuerschlüssel);
}

double ImportJobObject2::GetGRabatt(const Value& KZRabattart, const Value& KZRabatt1, const Value& Rabatt1,
                                    const Value& KZRabatt2, const Value& Rabatt2, const Value& KZRabatt3,
                                    const Value& Rabatt3, const Value& Param, const Value& Betrag) const {
  StagedDiscounts discounts;
  discounts.kind = KZRabattart.text();
  discounts.marks = {KZRabatt1.text(), KZRabatt2.text(), KZRabatt3.text()};
  discounts.values = {Rabatt1.number().value_or(0), Rabatt2.number().value_or(0),
                      Rabatt3.number().value_or(0)};
  return qx::GetGRabatt(environment_, discounts, Param, Betrag.number().value_or(0));
}

double ImportJobObject2::rundenEx(double zahl, double RundenAuf, bool Aufrunden) {
  return qx::rundenEx(zahl, RundenAuf, Aufrunden);
}

std::string ImportJobObject2::intdat(const Value& SystemDatum) { return qx::intdat(SystemDatum); }

Date ImportJobObject2::NowEx() const { return qx::NowEx(environment_); }

double ImportJobObject2::GetLagerbestand(std::string_view Artikelnummer, std::string_view Mengeneinheit,
                                         double /*Menge*/, std::string& strME, bool MEUmrechnung) const {
  const StockAnswer answer = Stock(environment_).GetLagerbestand(Artikelnummer, Mengeneinheit, MEUmrechnung);
  strME = answer.unit;
  return answer.stock;
}

std::string ImportJobObject2::MengeneinheitAlternativ(std::string_view Mengeneinheit) const {
  return Stock(environment_).MengeneinheitAlternativ(Mengeneinheit);
}

std::int32_t ImportJobObject2::CheckKostzuord(std::string_view Belegart, std::int32_t KostID,
                                              bool ShowMessage) const {
  return CostAssignment(environment_).CheckKostzuord(Belegart, KostID, ShowMessage);
}

const Scrambler& ImportJobObject2::scrambler() {
  if (!scrambler_) scrambler_ = installedScrambler(environment_);
  return *scrambler_;
}

std::string ImportJobObject2::Encrypt(std::string_view strText) { return scrambler().Encrypt(strText); }

std::string ImportJobObject2::Decrypt(std::string_view strText) { return scrambler().Decrypt(strText); }

std::int32_t ImportJobObject2::CheckSum(std::string_view strText) { return Scrambler::CheckSum(strText); }

} // namespace qx
