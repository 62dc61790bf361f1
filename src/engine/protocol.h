// The processing protocol: one per day, one line per job.
#pragma once

#include "platform/environment.h"
#include "settings/settings.h"

#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace qx {

/// One line of the protocol. The article columns are set together when they were passed, even when empty.
struct ProtocolLine {
  struct Articles {
    std::string numbers;
    std::string descriptions;
    std::string quantities;
    std::string prices;
  };

  std::string_view transaction; ///< "Kunden", "Vertrag" or "Auftrag"
  std::string number;
  std::string_view status; ///< "Erledigt", "Warnung" or "Fehler"
  std::string date;        ///< date of receipt of the job
  std::string info;
  std::optional<Articles> articles;
  bool newCustomer = false;
};

/// Opens the day's protocol, adds lines to it and removes one that holds nothing worth keeping.
///
/// A failure shows a message box and is reported to the diagnostics; nothing else is rolled back. After a
/// failed `create` no protocol is open and no old identity is kept, so that every line fails as well.
class Protocol {
public:
  using Show = std::function<void(const Message&)>;

  /// Creates the ERP's protocol component at once; without one every call fails with a message box.
  explicit Protocol(Environment& environment);

  /// Makes sure that a protocol of the session's day is open; true when one is. Outside a unit of work. On a
  /// connection of our own a fatal store error is raised, and `wait` decides how long to wait for a busy
  /// database, null for the connection's own limit.
  bool create(const Show& show, BusyWait* wait = nullptr);
  /// Adds a line in a savepoint of its own; false when it could not be written.
  bool add(const ProtocolLine& line, const Show& show);
  /// Reports that a line was given up because it had undone its job.
  void giveUpLine(const std::exception& loss, const Show& show);
  /// Deletes the open protocol unless it holds an order or a new customer; none is open then. Outside a unit
  /// of work.
  void cleanUp(BusyWait* wait);

  /// Closes the protocol, which belongs to the connection that it was opened on.
  void forget() { id_.clear(); }

  /// The identity of the open protocol, or empty.
  const std::string& id() const { return id_; }

private:
  void createComponent();
  void openOrCreate(BusyWait* wait);
  bool endsTheRun(const std::exception& error) const;

  Environment& environment_;
  Settings settings_;
  std::unique_ptr<Protokoll> protokoll_;
  std::string id_;
};

} // namespace qx
