#include "rules/customer_addresses.h"

namespace qx {

bool CustomerAddresses::KundeAngelegt(std::string_view Kundennummer, std::string_view Adressnummer) const {
  const Sql statement =
      Adressnummer.empty()
          ? sql("SELECT Kundennummer From Kundenstamm where Kundennummer = '"_sql, value(Kundennummer),
                "'"_sql)
          : sql("SELECT Kundennummer From Adressenstamm where Kundennummer = '"_sql, value(Kundennummer),
                "' And Adressnummer = '"_sql, value(Adressnummer), "'"_sql);
  return !activeConnection(environment_).open(statement)->eof();
}

std::optional<Adresse> CustomerAddresses::GetAdressDaten(std::string_view Kundennummer,
                                                         std::string_view Adressnummer) const {
  const Sql statement =
      Adressnummer.empty()
          ? sql("SELECT Bez1, Bez2, Bez3, Strasse, Land, PLZ, Ort From Kundenstamm where Kundennummer = '"_sql,
                value(Kundennummer), "'"_sql)
          : sql("SELECT Bez1, Bez2, Bez3, Strasse, Land, PLZ, Ort From Adressenstamm where Kundennummer = '"_sql,
                value(Kundennummer), "' And Adressnummer = '"_sql, value(Adressnummer), "'"_sql);
  return firstOf(statement);
}

std::optional<Adresse> CustomerAddresses::generalAddress(std::string_view number) const {
  return firstOf(
      sql("SELECT Bez1, Bez2, Bez3, Strasse, Land, PLZ, Ort From Adressenstamm where Kundennummer Is Null "
          "And Adressnummer = '"_sql,
          value(number), "'"_sql));
}

std::optional<Adresse> CustomerAddresses::firstOf(const Sql& statement) const {
  const auto rows = activeConnection(environment_).open(statement);
  if (rows->eof()) return std::nullopt;
  return Adresse{rows->text("Bez1"), rows->text("Bez2"), rows->text("Bez3"), rows->text("Strasse"),
                 rows->text("Land"), rows->text("PLZ"),  rows->text("Ort")};
}

std::string CustomerAddresses::GetAdresse(std::string_view Kundennummer,
                                          std::string_view Adressnummer) const {
  const auto found = GetAdressDaten(Kundennummer, Adressnummer);
  if (!found) return {};
  std::string text;
  for (const std::string* line :
       {&found->Bez1, &found->Bez2, &found->Bez3, &found->Strasse, &found->Land, &found->PLZ, &found->Ort}) {
    if (line->empty()) continue;
    if (!text.empty()) text += "\r\n";
    text += *line;
  }
  return text;
}

bool CustomerAddresses::AddAdressDaten(std::string_view Kundennummer, std::string_view Adressnummer,
                                       const Adresse& adresse) const {
  if (Adressnummer.empty() || KundeAngelegt(Kundennummer, Adressnummer)) return false;
  // Another program may add it in between.
  const Sql addition =
      sql("Insert Into Adressenstamm (Kundennummer, Adressnummer, Bez1, Bez2, Bez3, Strasse, Land, PLZ, Ort) "
          "Select '"_sql,
          value(Kundennummer), "', '"_sql, value(Adressnummer), "', '"_sql, nullable(adresse.Bez1),
          "', '"_sql, nullable(adresse.Bez2), "', '"_sql, nullable(adresse.Bez3), "', '"_sql,
          nullable(adresse.Strasse), "', '"_sql, nullable(adresse.Land), "', '"_sql, nullable(adresse.PLZ),
          "', '"_sql, nullable(adresse.Ort),
          "' Where Not Exists (Select Kundennummer From Adressenstamm where Kundennummer = '"_sql,
          value(Kundennummer), "' And Adressnummer = '"_sql, value(Adressnummer), "')"_sql);
  if (activeConnection(environment_).changeOne("Adressenstamm", addition)) return true;
  if (!KundeAngelegt(Kundennummer, Adressnummer)) throw NotInserted("Adressenstamm");
  return false;
}

} // namespace qx
