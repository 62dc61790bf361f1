#include "rules/master_data.h"

#include "model/text.h"

#include <array>
#include <stdexcept>
#include <utility>

namespace qx {
namespace {

/// Where the codes of a field stand.
struct CodeTable {
  std::string_view field;
  Sql (*lookup)(std::string_view code);
};

template <SqlLiteral beforeCode>
Sql codeLookup(std::string_view code) {
  return sql(SqlFragment<beforeCode>(), value(code), "'"_sql);
}

// The doubled blanks are part of the statements.
constexpr std::array codeTables{
    CodeTable{"Zahlungsart", codeLookup<"SELECT  Zahlungsart From Zahlungsarten where Zahlungsart='">},
    CodeTable{"Vertreter", codeLookup<"SELECT VertreterNr From Vertreter where VertreterNr ='">},
    CodeTable{"Preisliste", codeLookup<"SELECT  Preisliste From PreislistenKopf where Preisliste = '">},
    CodeTable{"Kundengruppe", codeLookup<"SELECT  Kundengruppe From Kundengruppen where Kundengruppe = '">},
    CodeTable{"Versandart", codeLookup<"SELECT  Versandart From Versandtexte where Versandart = '">},
    CodeTable{"Vertragsart", codeLookup<"SELECT Vertragsart From Vertragsarten where Vertragsart = '">},
    CodeTable{"ZahlungsbedSchl",
              codeLookup<"SELECT ZahlbedSchl From Zahlungsbedingungen where ZahlbedSchl = '">},
    CodeTable{"Währung", codeLookup<"SELECT Währung From Währungen where Währung = '">},
    CodeTable{"Bankleitzahl", codeLookup<"SELECT Bankleitzahl From Kreditinstitute where Bankleitzahl = '">},
    CodeTable{"Hauptkonto", codeLookup<"SELECT Kundennummer From Kundenstamm where Kundennummer = '">},
};

} // namespace

std::string MasterData::firstText(const Sql& statement) const {
  const auto rows = activeConnection(environment_).open(statement);
  return rows->eof() ? std::string() : rows->value(std::size_t{0}).text();
}

double MasterData::firstNumber(const Sql& statement) const {
  const auto rows = activeConnection(environment_).open(statement);
  return rows->eof() ? 0 : rows->value(std::size_t{0}).number().value_or(0);
}

bool MasterData::anyRow(const Sql& statement) const {
  return !activeConnection(environment_).open(statement)->eof();
}

std::optional<Textbaustein> MasterData::GetTextbaustein(std::string_view Textart, std::string_view TextNummer,
                                                        std::string_view Zusatztext,
                                                        std::string_view SprachKZ) const {
  const auto rows = activeConnection(environment_)
                        .open(sql("SELECT * FROM Textbausteine WHERE Textart='"_sql, value(Textart),
                                  "' AND TextNummer='"_sql, value(TextNummer), "' AND ZusatztextNummer='"_sql,
                                  value(Zusatztext), "' AND SprachKZ='"_sql, value(SprachKZ), "'"_sql));
  if (rows->eof()) return std::nullopt;
  Textbaustein found;
  found.Kurztext = rows->text("Kurztext");
  found.Langtext = rows->text("Langtext");
  found.WoDrucken = rows->text("WoDrucken");
  found.Schriftart = rows->text("Schriftart");
  // One that does not fit into 16 bits is none.
  found.Schriftgröße = wholeAs<std::int16_t>(rows->value("Schriftgröße")).value_or(0);
  found.Schriftstil = rows->text("Schriftstil");
  return found;
}

std::string MasterData::GetArtikelbezeichnung(std::string_view Artikelnummer) const {
  return firstText(
      sql("SELECT Bez From Artikelstamm Where Artikelnummer ='"_sql, value(Artikelnummer), "'"_sql));
}

bool MasterData::ArtikelAngelegt(std::string_view Artikelnummer) const {
  return anyRow(
      sql("SELECT Artikelnummer FROM Artikelstamm WHERE Artikelnummer='"_sql, value(Artikelnummer), "'"_sql));
}

bool MasterData::GetDiversKunde(std::string_view Kundennummer) const {
  return firstNumber(sql("SELECT KZDivers FROM Kundenstamm WHERE Kundennummer='"_sql, value(Kundennummer),
                         "'"_sql)) != 0;
}

std::string MasterData::GetBankverbindung(std::string_view BLZ) const {
  return firstText(
      sql("Select Kreditinstitut From Kreditinstitute WHERE Bankleitzahl='"_sql, value(BLZ), "'"_sql));
}

std::string MasterData::GetVertragsgegenstand(std::string_view VertragsgegenstandNr) const {
  return firstText(sql("SELECT Bez FROM Vertragsgegenstände WHERE VertrGegenstandsNr='"_sql,
                       value(VertragsgegenstandNr), "'"_sql));
}

bool MasterData::VertragsgegenstandAngelegt(std::string_view Vertragsgegenstand) const {
  return anyRow(
      sql("Select VertrGegenstandsNr From [Vertragsgegenstände] where [VertrGegenstandsNr]  = '"_sql,
          value(Vertragsgegenstand), "'"_sql));
}

std::string MasterData::salesRepText(std::string_view number) const {
  const auto rows =
      activeConnection(environment_)
          .open(sql("SELECT * From Vertreter where VertreterNr ='"_sql, value(number), "'"_sql));
  if (rows->eof()) return {};
  std::string text = rows->text("Bez1");
  if (const std::string second = rows->text("Bez2"); !second.empty()) text += " " + second;
  if (const std::string place = rows->text("Ort"); !place.empty()) text += "\r\nOrt: " + place;
  return text;
}

std::string MasterData::shippingMethodOfCustomer(std::string_view customer) const {
  return firstText(
      sql("Select Versandart From Kundenstamm where Kundennummer  = '"_sql, value(customer), "'"_sql));
}

std::string MasterData::paymentMethodOfCustomer(std::string_view customer) const {
  return firstText(
      sql("SELECT Zahlungsart From Kundenstamm Where Kundennummer ='"_sql, value(customer), "'"_sql));
}

std::string MasterData::shippingMethodText(std::string_view code) const {
  return firstText(sql("SELECT Kurztext From Versandtexte Where Versandart ='"_sql, value(code), "'"_sql));
}

std::string MasterData::entryScheme(std::string_view article) const {
  return firstText(
      sql("Select Erfassungsschema From Artikelstamm where Artikelnummer = '"_sql, value(article), "'"_sql));
}

bool MasterData::isAccessory(std::string_view article) const {
  return isAccessoryScheme(entryScheme(article));
}

bool MasterData::isAccessoryScheme(std::string_view scheme) { return equalCodes(scheme, "Zubehoer"); }

double MasterData::orderWeight(std::int32_t order) const {
  return firstNumber(sql(
      "SELECT Sum(PosGewicht) AS GesamtGewicht FROM Auftragspos Where Auftragsnummer= "_sql, number(order)));
}

double MasterData::accessoryValue(std::int32_t order) const {
  return firstNumber(
      sql("SELECT Sum([IND_Zahl4]*Menge) AS GesamtPreis FROM Auftragspos Where Auftragsnummer= "_sql,
          number(order), " And Zeilentyp = 'K' And Erfassungsschema = 'Zubehoer'"_sql));
}

double MasterData::orderValue(std::int32_t order) const {
  return firstNumber(sql("SELECT Sum(Preis*Menge) AS GesamtPreis FROM Auftragspos Where Auftragsnummer= "_sql,
                         number(order)));
}

Sql MasterData::codeLookup(std::string_view field, std::string_view code) {
  for (const CodeTable& table : codeTables)
    if (table.field == field) return table.lookup(code);
  throw std::invalid_argument("no master table is known for the field '" + std::string(field) + "'");
}

bool MasterData::codeExists(std::string_view field, std::string_view code) const {
  return anyRow(codeLookup(field, code));
}

} // namespace qx
