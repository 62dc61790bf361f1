#include "engine/contract_line.h"

#include "model/date.h"
#include "store/staging_writer.h"

#include <array>
#include <utility>

namespace qx {
namespace {

bool takeTwoDigits(std::string_view& text, int least, int most, int limit) {
  int digits = 0;
  int number = 0;
  while (digits < most && static_cast<std::size_t>(digits) < text.size() &&
         text[static_cast<std::size_t>(digits)] >= '0' && text[static_cast<std::size_t>(digits)] <= '9')
    number = number * 10 + (text[static_cast<std::size_t>(digits++)] - '0');
  text.remove_prefix(static_cast<std::size_t>(digits));
  return digits >= least && number <= limit;
}

/// "h:mm", "hh:mm:ss", each with " AM" or " PM" or without.
bool isTimeOfDay(std::string_view text) {
  if (!takeTwoDigits(text, 1, 2, 23) || text.empty() || text.front() != ':') return false;
  text.remove_prefix(1);
  if (!takeTwoDigits(text, 2, 2, 59)) return false;
  if (!text.empty() && text.front() == ':') {
    text.remove_prefix(1);
    if (!takeTwoDigits(text, 2, 2, 59)) return false;
  }
  return text.empty() || text == " AM" || text == " PM";
}

Value written(const Value& staged) { return emptyToNull(staged); }
Value writtenKey(const Value& staged) { return Value(staged.text()); }
Value writtenDay(const Value& staged) { return contractDate(staged, NoDate::Midnight); }
Value writtenBegin(const Value& staged) { return contractDate(staged, NoDate::MidnightOrNoon); }
Value writtenEnd(const Value& staged) {
  Value end = contractDate(staged, NoDate::Midnight);
  return end.isNull() ? Value(openContractEnd) : end;
}
Value writtenPayments(const Value& staged) { return staged.isEmpty() ? Value("0") : staged; }
Value writtenInterval(const Value& staged) { return staged.isNull() ? Value(std::int16_t{12}) : staged; }
Value writtenState(const Value& staged) { return staged.isEmpty() ? Value(activeContract) : staged; }
Value writtenAmount(const Value& staged) {
  const auto amount = staged.money();
  return amount ? Value(*amount) : emptyToNull(staged);
}

using Role = ContractPair::Role;
constexpr std::array pairs{ContractPair{"Kundennummer", "Kundennummer", writtenKey, Role::Key},
                           ContractPair{"Vertragsnummer", "Vertragsnummer", writtenKey, Role::Key},
                           ContractPair{"Vertragsdatum", "Vertragsdatum", writtenDay},
                           ContractPair{"Vertragsbeginn", "Vertragsbeginn", writtenBegin},
                           ContractPair{"Vertragsende", "Vertragsende", writtenEnd},
                           ContractPair{"Zahlungsweise", "Zahlungsweise", writtenPayments},
                           ContractPair{"Intervall", "Intervall", writtenInterval},
                           ContractPair{"IntervallErstmals", "Intervall", writtenInterval, Role::Repeats},
                           ContractPair{"IntervallVerlängerung", "Intervall", writtenInterval, Role::Repeats},
                           ContractPair{"Bemerkung", "Info", written},
                           ContractPair{"Kündigungsgrund", "Kündigungsgrund", written},
                           ContractPair{"Zustand", "Zustand", writtenState},
                           ContractPair{"Vertragsart", "Vertragsart", writtenKey, Role::Key},
                           ContractPair{"VertrGegenstandsNr", "Artikelnummer", writtenKey, Role::Key},
                           ContractPair{"Anzahl", "Menge", written},
                           ContractPair{"Betrag", "Preis", writtenAmount},
                           ContractPair{"PreisabweichungGrund", "IndFild1", written},
                           ContractPair{"PreisabweichungGenehmigender", "IndFild2", written},
                           ContractPair{"PreisabweichungDatum", "IndFild3", written},
                           ContractPair{"PreisabweichungBemerkung", "IndFild4", written},
                           ContractPair{"VS_KdNr", "VS_KdNr", written},
                           ContractPair{"GekuendigtAm", "GekuendigtAm", written},
                           ContractPair{"GrundVerlorenSchl", "GrundVerlorenSchl", written},
                           ContractPair{"Vertragstext", "Vertragstext", written}};

} // namespace

std::unique_ptr<Recordset> openContractPositions(Connection& connection, std::string_view jobId) {
  return connection.open(sql("Select * From ImportPos   Where JobID = '"_sql, value(jobId), "'"_sql));
}

ContractKey ContractKey::of(const JobFields& job) {
  return {job("Kundennummer").text(), job("Vertragsnummer").text(), job("Artikelnummer").text(),
          job("Vertragsart").text()};
}

std::unique_ptr<Recordset> openContract(Connection& connection, const ContractKey& key) {
  return connection.open(sql("Select * From Verträge Where KundenNummer ='"_sql, value(key.customer),
                             "' and Vertragsnummer='"_sql, value(key.number),
                             "' and  VertrGegenstandsNr='"_sql, value(key.object), "' and Vertragsart='"_sql,
                             value(key.kind), "'"_sql));
}

Value contractObjectText(Connection& connection, std::string_view object) {
  const auto found = connection.open(
      sql("Select Bez From Vertragsgegenstände where VertrGegenstandsNr  = '"_sql, value(object), "'"_sql));
  return found->eof() ? Value::null() : found->value("Bez");
}

std::string contractState(const JobFields& job) {
  std::string state = job("Zustand").text();
  return state.empty() ? std::string(activeContract) : state;
}

bool skipsObjectChecks(std::string_view state) { return state == "I" || state == "E"; }

Value contractDate(const Value& text, NoDate none) {
  const std::string written = text.text();
  if (written == "00:00:00" || (none == NoDate::MidnightOrNoon && written == "12:00:00 AM"))
    return Value::null();
  return parseGermanDateTime(written) || isTimeOfDay(written) ? text : Value::null();
}

std::span<const ContractPair> contractPairs() { return pairs; }

std::vector<ContractColumn> contractColumns(Connection& connection, const JobFields& job) {
  std::vector<ContractColumn> columns;
  for (const ContractPair& pair : pairs) {
    Value content = pair.written(job(pair.staged));
    // Senders without a field for it put the remark in the job's.
    if (content.isNull() && pair.line == ColumnName("Bemerkung")) content = emptyToNull(job("Bemerkung"));
    if (content.isNull() && pair.line == ColumnName("Vertragstext"))
      content = contractObjectText(connection, job("Artikelnummer").text());
    columns.push_back({pair.line, std::move(content), pair.role == Role::Key});
  }
  return columns;
}

} // namespace qx
