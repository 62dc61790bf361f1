// Small questions about the ERP's master data.
#pragma once

#include "platform/environment.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qx {

/// A text block of the ERP.
struct Textbaustein {
  std::string Kurztext;
  std::string Langtext;
  std::string WoDrucken;
  std::string Schriftart;
  std::int16_t Schriftgröße = 0;
  std::string Schriftstil;
};

/// Lookups on the shared connection, one statement each. An unknown code is no error but gives an empty text,
/// false or 0. Database errors reach the caller. Nothing is written.
class MasterData {
public:
  explicit MasterData(Environment& environment) : environment_(environment) {}

  std::optional<Textbaustein> GetTextbaustein(std::string_view Textart, std::string_view TextNummer,
                                              std::string_view Zusatztext, std::string_view SprachKZ) const;
  std::string GetArtikelbezeichnung(std::string_view Artikelnummer) const;
  bool ArtikelAngelegt(std::string_view Artikelnummer) const;
  bool GetDiversKunde(std::string_view Kundennummer) const;
  std::string GetBankverbindung(std::string_view BLZ) const;
  std::string GetVertragsgegenstand(std::string_view VertragsgegenstandNr) const;
  bool VertragsgegenstandAngelegt(std::string_view Vertragsgegenstand) const;

  /// Name lines and, on a line of its own, "Ort: " and the place.
  std::string salesRepText(std::string_view number) const;
  std::string shippingMethodOfCustomer(std::string_view customer) const;
  std::string paymentMethodOfCustomer(std::string_view customer) const;
  std::string shippingMethodText(std::string_view code) const;

  /// The article's entry scheme is "Zubehoer".
  bool isAccessory(std::string_view article) const;
  static bool isAccessoryScheme(std::string_view scheme);

  double orderWeight(std::int32_t order) const;
  double accessoryValue(std::int32_t order) const;
  double orderValue(std::int32_t order) const;

  /// Whether a master table holds the code. The field is one of `Zahlungsart`, `Vertreter`, `Preisliste`,
  /// `Kundengruppe`, `Versandart`, `Vertragsart`, `ZahlungsbedSchl`, `Währung`, `Bankleitzahl` and
  /// `Hauptkonto` (a customer number); any other raises `std::invalid_argument`. An empty code is in no
  /// table.
  /// The statement that `codeExists` asks.
  static Sql codeLookup(std::string_view field, std::string_view code);
  bool codeExists(std::string_view field, std::string_view code) const;

private:
  std::string firstText(const Sql& statement) const;
  double firstNumber(const Sql& statement) const;
  bool anyRow(const Sql& statement) const;
  std::string entryScheme(std::string_view article) const;

  Environment& environment_;
};

} // namespace qx
