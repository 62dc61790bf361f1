#include "engine/protocol.h"

#include "platform/conflict_retry.h"
#include "platform/failure.h"
#include "rules/dates.h"

#include <exception>
#include <stdexcept>

namespace qx {
namespace {

constexpr std::string_view title = "Verarbeitungsprotokoll ImportJob";
constexpr std::string_view kind = "Import";
constexpr std::string_view list = "LST_ImportJob";

constexpr std::string_view lineFailure = "Fehler beim Erzeugen der Protokollzeile. ";

void showFailure(const Protocol::Show& show, std::string_view text, const std::exception& error) {
  show({.text = std::string(text) + germanCause(error), .icon = MessageIcon::Critical});
}

void fillLine(Protokoll& protokoll, const ProtocolLine& line) {
  protokoll.AddNewRecord();
  protokoll.SetField(Protokoll::shortText, 0, line.transaction);
  protokoll.SetField(Protokoll::shortText, 1, line.number);
  protokoll.SetField(Protokoll::shortText, 2, line.status);
  protokoll.SetField(Protokoll::shortText, 3, germanDay(Value(line.date)));
  protokoll.SetField(Protokoll::longText, 0, line.info);
  if (line.articles) {
    protokoll.SetField(Protokoll::shortText, 4, line.articles->numbers);
    protokoll.SetField(Protokoll::shortText, 5, line.articles->descriptions);
    protokoll.SetField(Protokoll::shortText, 6, line.articles->quantities);
    protokoll.SetField(Protokoll::shortText, 7, line.articles->prices);
  }
  if (line.newCustomer) protokoll.SetField(Protokoll::shortText, 8, "1");
  protokoll.UpdateRecord();
}

} // namespace

Protocol::Protocol(Environment& environment)
    : environment_(environment), settings_(environment, SettingTrap::Refusals) {
  // When this fails the next protocol that is created asks for it again.
  trapped(environment.diagnostics, {"protocol component"}, [this] { createComponent(); });
}

/// A run without a protocol would leave no trace of its work, so a fatal store error ends it before its first
/// job. On a host's connection the host has to notice.
bool Protocol::endsTheRun(const std::exception& error) const {
  if (isOutOfMemory(error)) return true;
  const bool fatal = dynamic_cast<const StoreError*>(&error) != nullptr ||
                     dynamic_cast<const InterruptedError*>(&error) != nullptr ||
                     dynamic_cast<const BusyError*>(&error) != nullptr ||
                     dynamic_cast<const RepeatedConflictError*>(&error) != nullptr;
  return fatal && environment_.connection && environment_.connection->ownsWork();
}

void Protocol::createComponent() { protokoll_ = environment_.components.createProtokoll(); }

bool Protocol::create(const Show& show, BusyWait* wait) {
  id_.clear();
  return !trapped(
      environment_.diagnostics,
      {"protocol", {}, [this](const std::exception& error) { return endsTheRun(error); }},
      [&] { doneAgainOnConflict(environment_, "protocol", [&] { openOrCreate(wait); }); },
      [&](const std::exception& error) {
        showFailure(show, "Verarbeitungsprotokoll konnte nicht erzeugt werden. ", error);
      });
}

void Protocol::openOrCreate(BusyWait* wait) {
  if (!protokoll_) createComponent();
  if (!protokoll_) throw std::runtime_error("Die Protokollkomponente fehlt.");
  Connection& connection = activeConnection(environment_);
  const std::string today = germanDate(NowEx(environment_));
  // The protocol, its identity and its day are stored together: if one were missing, the next run of the day
  // would create a second protocol and readers of the day's protocol would miss the lines of the first.
  WorkUnit unit(connection, wait, Join::IfOpen);
  std::string id;
  if (settings_[option::protocolDate] == today) {
    const std::string stored = settings_[option::protocolId];
    if (protokoll_->OpenProtokoll(connection, stored)) id = stored;
  }
  if (id.empty()) {
    id = protokoll_->CreateProtokoll(connection, title, kind, list);
    settings_.save(option::protocolId, id);
  }
  settings_.save(option::protocolDate, today);
  // A host's session may report a lost unit as a setting that could not be written, which would be skipped.
  if (connection.ownsWork() && !connection.inWork())
    throw WorkLostError("Das Protokoll konnte nicht gespeichert werden.", 0);
  unit.commit();
  id_ = id;
}

bool Protocol::add(const ProtocolLine& line, const Show& show) {
  // If the surrounding unit has failed, the line is lost as well; the run decides what to do.
  const bool own = environment_.connection && environment_.connection->ownsWork();
  return !trapped(
      environment_.diagnostics, {"protocol", {}, own ? &isFatal : &isOutOfMemory},
      [&] {
        if (!protokoll_ || id_.empty()) throw std::runtime_error("Es ist kein Protokoll geöffnet.");
        Savepoint part(activeConnection(environment_));
        fillLine(*protokoll_, line);
        part.release();
      },
      [&](const std::exception& error) { showFailure(show, lineFailure, error); });
}

void Protocol::giveUpLine(const std::exception& loss, const Show& show) {
  environment_.diagnostics.report({"protocol", loss.what(), ""});
  showFailure(show, lineFailure, loss);
}

void Protocol::cleanUp(BusyWait* wait) {
  if (id_.empty()) return;
  Connection& connection = *environment_.connection;
  WorkUnit unit(connection, wait, Join::IfOpen);
  const auto kept = connection.open(
      sql("SELECT * FROM Protokollpositionen WHERE ([Text0]='Auftrag' Or [Text8]='1') and ID ='"_sql,
          value(id_), "'"_sql));
  if (kept->recordCount() > 0) return;
  // ProtoID and ProtoDate keep naming the deleted protocol on purpose: the next run of the day fails to open
  // it and creates another.
  connection.execute(sql("DELETE FROM Protokollpositionen WHERE ID ='"_sql, value(id_), "'"_sql));
  connection.execute(sql("DELETE FROM Protokolle WHERE ID ='"_sql, value(id_), "'"_sql));
  unit.commit();
  id_.clear();
}

} // namespace qx
