#include "erp/standalone_erp.h"

#include "erp/open_items.h"
#include "erp/prices.h"
#include "erp/standalone_protokoll.h"
#include "erp/standalone_session.h"

#include <stdexcept>
#include <utility>

namespace qx::erp {
namespace {

class StandaloneVersion final : public Version {
public:
  explicit StandaloneVersion(std::string text) : text_(std::move(text)) {}
  std::string version() override { return text_; }

private:
  std::string text_;
};

class StandaloneProfile final : public Profile {
public:
  explicit StandaloneProfile(std::string directory) : directory_(std::move(directory)) {
    while (directory_.size() > 1 && directory_.back() == '/') directory_.pop_back();
  }
  std::string GetAppPath() override { return directory_; }

private:
  std::string directory_;
};

/// Keeps one row per customer and kind with the customer's search words: search term, names, postcode and
/// town in lower case. The row of a customer who no longer exists is removed.
class StandaloneAdressindex final : public Adressindex {
public:
  /// `connection` must outlive the object.
  explicit StandaloneAdressindex(Connection& connection) : connection_(connection) {}

  void CreateIndex(std::string_view customer, std::int16_t kind) override {
    const auto rows =
        connection_.open(sql("Select Kundennummer, Suchbegriff, Bez1, Bez2, Bez3, PLZ, Ort From "
                             "Kundenstamm Where Kundennummer = '"_sql,
                             value(customer), "'"_sql));
    if (rows->eof()) {
      connection_.execute(sql("Delete From Adressindex Where Kundennummer = '"_sql, value(customer),
                              "' And Art = "_sql, number(kind)));
      return;
    }
    std::string words;
    for (std::size_t i = 1; i < rows->fieldCount(); ++i) {
      const std::string word = rows->value(i).text();
      if (word.empty()) continue;
      if (!words.empty()) words += ' ';
      words += lowerCase(word);
    }
    const std::array<ColumnValue, 3> row{ColumnValue{"Kundennummer", rows->text("Kundennummer")},
                                         ColumnValue{"Art", kind}, ColumnValue{"Suchtext", words}};
    connection_.put("Adressindex", row, 2);
  }

private:
  Connection& connection_;
};

} // namespace

StandaloneErp::StandaloneErp(std::shared_ptr<Connection> connection, Clock& clock, Desktop& desktop,
                             Diagnostics& diagnostics, const ProcessIdentity& identity,
                             StandaloneOptions options)
    : connection_(std::move(connection)), clock_(clock), desktop_(desktop), diagnostics_(diagnostics),
      identity_(identity), options_(std::move(options)) {}

std::shared_ptr<Session> StandaloneErp::createSession() {
  return std::make_shared<StandaloneSession>(connection_, clock_, desktop_, identity_.sessionId(), options_);
}

std::unique_ptr<Protokoll> StandaloneErp::createProtokoll() {
  // A protocol has the session date and the time of the clock.
  auto now = [&clock = clock_, sessionDate = options_.sessionDate] {
    DateTime moment = clock.now();
    if (sessionDate) moment.date = *sessionDate;
    return moment;
  };
  return std::make_unique<StandaloneProtokoll>(std::move(now), identity_.sessionId());
}

std::unique_ptr<Preisfindung> StandaloneErp::createPreisfindung() {
  return std::make_unique<SalesPrices>(diagnostics_);
}

std::unique_ptr<Einkaufspreisfindung> StandaloneErp::createEinkaufspreisfindung(Connection& connection) {
  return std::make_unique<PurchasePrices>(connection, diagnostics_);
}

std::unique_ptr<Version> StandaloneErp::createVersion() {
  return std::make_unique<StandaloneVersion>(options_.version);
}

std::unique_ptr<Profile> StandaloneErp::createProfile() {
  return std::make_unique<StandaloneProfile>(options_.applicationDirectory);
}

std::unique_ptr<Adressindex> StandaloneErp::createAdressindex(Connection& connection) {
  return std::make_unique<StandaloneAdressindex>(connection);
}

std::unique_ptr<FibuUebergabe> StandaloneErp::createFibuUebergabe() { return std::make_unique<OpenItems>(); }

std::unique_ptr<Auskunft> StandaloneErp::createAuskunft() {
  if (auskunftFactory_) return auskunftFactory_();
  throw std::runtime_error("Auskünfte gibt es nur im Fenster, nicht in diesem Programm.");
}

} // namespace qx::erp
