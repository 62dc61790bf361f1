// The small ERP components and the factory that creates all of them.
#pragma once

#include "platform/database.h"
#include "platform/preisfindung.h"
#include "platform/protokoll.h"
#include "platform/session.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// `qxWWSVer.Version`.
class Version {
public:
  virtual ~Version() = default;
  virtual std::string version() = 0;
};

/// `qxWSPro.WSProfile`.
class Profile {
public:
  virtual ~Profile() = default;
  /// The application directory, without a separator at the end.
  virtual std::string GetAppPath() = 0;
};

/// `qxAdrIdx.Adressindex`.
class Adressindex {
public:
  virtual ~Adressindex() = default;
  /// Updates the search index of a customer; an unknown number is no error.
  virtual void CreateIndex(std::string_view customer, std::int16_t kind) = 0;
};

/// The balance of a customer's open items with its currency ("" is the home currency).
struct OpenItemsBalance {
  double amount = 0;
  std::string currency;
};

/// `Norvalis.FibuUebergabeObject`.
class FibuUebergabe {
public:
  virtual ~FibuUebergabe() = default;
  virtual void setConnection(Connection& connection) = 0;
  virtual OpenItemsBalance GetOPSaldo(std::string_view customer) = 0;
  /// Converts between two currencies ("" is the home currency). Raises `std::runtime_error` for a currency
  /// without a rate.
  virtual double convert(double amount, std::string_view from, std::string_view to) = 0;
};

/// One lookup window: what it shows and which fields of the chosen row it returns.
struct LookupRequest {
  std::string recordSource;
  std::string caption;
  std::string profile;
  std::string acceptCaption;
  Sql criteria; ///< the condition, without its keyword; empty for all rows
  std::string sort;
  std::vector<std::string> resultFields;
};

/// `Norvalis.AuskunftObject`.
class Auskunft {
public:
  virtual ~Auskunft() = default;
  /// The values of the result fields in their order; empty when the user chose nothing.
  virtual std::vector<std::string> show(Session& session, const LookupRequest& request) = 0;
};

/// Creates the ERP's components. Each call returns a new component; for one that the host lacks it raises
/// `std::runtime_error`, except for the optional purchase prices, which are then null.
class ErpComponents {
public:
  virtual ~ErpComponents() = default;
  virtual std::shared_ptr<Session> createSession() = 0;
  virtual std::unique_ptr<Protokoll> createProtokoll() = 0;
  virtual std::unique_ptr<Preisfindung> createPreisfindung() = 0;
  virtual std::unique_ptr<Einkaufspreisfindung> createEinkaufspreisfindung(Connection& connection) = 0;
  virtual std::unique_ptr<Version> createVersion() = 0;
  virtual std::unique_ptr<Profile> createProfile() = 0;
  virtual std::unique_ptr<Adressindex> createAdressindex(Connection& connection) = 0;
  virtual std::unique_ptr<FibuUebergabe> createFibuUebergabe() = 0;
  virtual std::unique_ptr<Auskunft> createAuskunft() = 0;
};

} // namespace qx
