// The addresses of customers: main addresses and numbered further ones.
#pragma once

#include "platform/environment.h"

#include <optional>
#include <string>
#include <string_view>

namespace qx {

/// The lines of an address; empty where the table holds null.
struct Adresse {
  std::string Bez1, Bez2, Bez3;
  std::string Strasse, Land, PLZ, Ort;

  friend bool operator==(const Adresse&, const Adresse&) = default;
};

/// Looks up and adds addresses, with one statement each. An empty address number means the customer's main
/// address in `Kundenstamm`, any other a row of `Adressenstamm`. Database errors reach the caller.
class CustomerAddresses {
public:
  explicit CustomerAddresses(Environment& environment) : environment_(environment) {}

  bool KundeAngelegt(std::string_view Kundennummer, std::string_view Adressnummer = {}) const;
  /// The non-empty lines joined with CR LF; empty when there is no such address.
  std::string GetAdresse(std::string_view Kundennummer, std::string_view Adressnummer = {}) const;
  std::optional<Adresse> GetAdressDaten(std::string_view Kundennummer,
                                        std::string_view Adressnummer = {}) const;
  /// The lines of an address that belongs to no customer.
  std::optional<Adresse> generalAddress(std::string_view number) const;
  /// Adds a numbered address, empty lines as null; an existing one is left unchanged. True when it was added.
  bool AddAdressDaten(std::string_view Kundennummer, std::string_view Adressnummer,
                      const Adresse& adresse) const;

private:
  std::optional<Adresse> firstOf(const Sql& statement) const;

  Environment& environment_;
};

} // namespace qx
