#include "erp/standalone_protokoll.h"

#include <stdexcept>
#include <utility>

namespace qx::erp {
namespace {

bool exists(Connection& connection, std::string_view id) {
  return !connection.open(sql("Select ID From Protokolle Where ID = '"_sql, value(id), "'"_sql))->eof();
}

/// Stamp, session and a number that distinguishes protocols of the same second: 32 characters.
std::string freeIdentity(Connection& connection, const std::string& start) {
  constexpr int triesPerSecond = 1000;
  for (int i = 0; i < triesPerSecond; ++i) {
    std::string count = std::to_string(i);
    std::string id = start + count.insert(0, 3 - count.size(), '0');
    if (!exists(connection, id)) return id;
  }
  throw std::runtime_error("In dieser Sekunde sind schon tausend Protokolle angelegt worden.");
}

} // namespace

StandaloneProtokoll::StandaloneProtokoll(std::function<DateTime()> now, std::string sessionId)
    : now_(std::move(now)), sessionId_(std::move(sessionId)) {}

std::string StandaloneProtokoll::CreateProtokoll(Connection& connection, std::string_view title,
                                                 std::string_view kind, std::string_view list) {
  const std::string stamp = timeStamp(now_());
  const std::string id = freeIdentity(connection, stamp + sessionId_);
  connection.insert("Protokolle", sql("Insert Into Protokolle (ID, Titel, Art, Liste, Datum) Values ('"_sql,
                                      value(id), "', '"_sql, value(title), "', '"_sql, value(kind),
                                      "', '"_sql, value(list), "', '"_sql, value(stamp), "')"_sql));
  connection_ = &connection;
  id_ = id;
  line_.reset();
  numbersEpoch_.reset();
  return id_;
}

bool StandaloneProtokoll::OpenProtokoll(Connection& connection, std::string_view id) {
  if (!exists(connection, id)) return false;
  connection_ = &connection;
  id_ = id;
  line_.reset();
  numbersEpoch_.reset();
  return true;
}

void StandaloneProtokoll::AddNewRecord() {
  if (connection_ == nullptr) throw std::logic_error("Es ist kein Protokoll geöffnet.");
  line_.emplace();
}

void StandaloneProtokoll::SetField(int kind, int column, std::string_view text) {
  Line& line = pendingLine();
  if (kind == shortText && column >= 0 && static_cast<std::size_t>(column) < shortColumns)
    line.texts[static_cast<std::size_t>(column)] = text;
  else if (kind == longText && column == 0)
    line.memo = text;
  else
    throw std::logic_error("Das Protokoll hat keine Spalte " + std::to_string(column) + " der Art " +
                           std::to_string(kind) + ".");
}

void StandaloneProtokoll::UpdateRecord() {
  const auto& [t, memo] = pendingLine();
  connection_->insert(
      "Protokollpositionen",
      sql("Insert Into Protokollpositionen (ID, Zeile, Text0, Text1, Text2, Text3, Text4, Text5, Text6, "
          "Text7, Text8, Memo0) Values ('"_sql,
          value(id_), "', "_sql, number(nextNumber()), ", '"_sql, nullable(t[0]), "', '"_sql, nullable(t[1]),
          "', '"_sql, nullable(t[2]), "', '"_sql, nullable(t[3]), "', '"_sql, nullable(t[4]), "', '"_sql,
          nullable(t[5]), "', '"_sql, nullable(t[6]), "', '"_sql, nullable(t[7]), "', '"_sql, nullable(t[8]),
          "', '"_sql, nullable(memo), "')"_sql));
  ++lastNumber_;
  numbersEpoch_ = connection_->epoch();
  line_.reset();
}

/// The line behind the last one, which is asked for once in a unit of work.
std::int64_t StandaloneProtokoll::nextNumber() {
  if (numbersEpoch_ != connection_->epoch()) {
    const auto last = connection_->open(
        sql("Select Max(Zeile) As Zeile From Protokollpositionen Where ID = '"_sql, value(id_), "'"_sql));
    lastNumber_ = last->value(std::size_t{0}).integer().value_or(0);
  }
  return lastNumber_ + 1;
}

StandaloneProtokoll::Line& StandaloneProtokoll::pendingLine() {
  if (!line_) throw std::logic_error("Es ist keine Protokollzeile begonnen.");
  return *line_;
}

} // namespace qx::erp
