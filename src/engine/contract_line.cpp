#include "engine/contract_line.h"

#include "model/date.h"
#include "store/staging_writer.h"

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

Value contractAmount(const Value& price) {
  const auto amount = price.money();
  return amount ? Value(*amount) : emptyToNull(price);
}

Value valueOr(const Value& value, const char* fallback) { return value.isEmpty() ? Value(fallback) : value; }

} // namespace

ContractFields contractFields(const JobRow& job) {
  return [&job](ColumnName column) { return job.value(column); };
}

ContractFields contractFields(const VertragFields& record) {
  return [&record](ColumnName column) -> Value {
    for (const auto& field : vertragFields) {
      if (!field.stored() || ColumnName(field.column) != column) continue;
      Value stored = field.visit(record, [](const auto& property) { return Value(property); });
      const bool open = column == ColumnName("Vertragsende") && stored.textView() == openContractEnd;
      return open ? Value::null() : emptyToNull(std::move(stored));
    }
    return Value::null();
  };
}

std::unique_ptr<Recordset> openContractPositions(Connection& connection, std::string_view jobId) {
  return connection.open(sql("Select * From ImportPos   Where JobID = '"_sql, value(jobId), "'"_sql));
}

ContractKey ContractKey::of(const ContractFields& job) {
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

std::string contractState(const ContractFields& job) {
  std::string state = job("Zustand").text();
  return state.empty() ? std::string(activeContract) : state;
}

bool skipsObjectChecks(std::string_view state) { return state == "I" || state == "E"; }

Value contractDate(const Value& text, bool noon) {
  const std::string written = text.text();
  if (written == "00:00:00" || (noon && written == "12:00:00 AM")) return Value::null();
  return parseGermanDateTime(written) || isTimeOfDay(written) ? text : Value::null();
}

std::vector<ContractColumn> contractColumns(Connection& connection, const ContractFields& job) {
  const ContractKey key = ContractKey::of(job);
  const Value interval = job("Intervall").isNull() ? Value(std::int16_t{12}) : job("Intervall");
  Value text = emptyToNull(job("Vertragstext"));
  if (text.isNull()) text = contractObjectText(connection, key.object);
  // Senders that know no field for it give the remark as that of the job.
  Value remark = emptyToNull(job("Info"));
  if (remark.isNull()) remark = emptyToNull(job("Bemerkung"));
  Value end = contractDate(job("Vertragsende"), false);
  if (end.isNull()) end = Value(openContractEnd);
  return {{"Kundennummer", Value(key.customer), true},
          {"Vertragsnummer", Value(key.number), true},
          {"Vertragsdatum", contractDate(job("Vertragsdatum"), false)},
          {"Vertragsbeginn", contractDate(job("Vertragsbeginn"), true)},
          {"Vertragsende", std::move(end)},
          {"Zahlungsweise", valueOr(job("Zahlungsweise"), "0")},
          {"Intervall", interval},
          {"IntervallErstmals", interval},
          {"IntervallVerlängerung", interval},
          {"Bemerkung", std::move(remark)},
          {"Kündigungsgrund", emptyToNull(job("Kündigungsgrund"))},
          {"Zustand", Value(contractState(job))},
          {"Vertragsart", Value(key.kind), true},
          {"VertrGegenstandsNr", Value(key.object), true},
          {"Anzahl", emptyToNull(job("Menge"))},
          {"Betrag", contractAmount(job("Preis"))},
          {"PreisabweichungGrund", emptyToNull(job("IndFild1"))},
          {"PreisabweichungGenehmigender", emptyToNull(job("IndFild2"))},
          {"PreisabweichungDatum", emptyToNull(job("IndFild3"))},
          {"PreisabweichungBemerkung", emptyToNull(job("IndFild4"))},
          {"VS_KdNr", emptyToNull(job("VS_KdNr"))},
          {"GekuendigtAm", emptyToNull(job("GekuendigtAm"))},
          {"GrundVerlorenSchl", emptyToNull(job("GrundVerlorenSchl"))},
          {"Vertragstext", std::move(text)}};
}

} // namespace qx
