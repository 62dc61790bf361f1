#include "erp/number_range.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <string>
#include <utility>

namespace qx::erp {
namespace {

constexpr int mostTries = 20;

[[noreturn]] void fail(std::string_view range, std::int16_t bookingCircle, const std::string& why) {
  throw std::runtime_error("Der Nummernkreis '" + std::string(range) + "' im Buchungskreis '" +
                           std::to_string(bookingCircle) + "' " + why);
}

using RangeState = NumberRanges::State;

std::optional<RangeState> readRange(Connection& connection, std::string_view range,
                                    std::int16_t bookingCircle) {
  std::shared_ptr<Recordset> rows = connection.open(
      sql("Select aktuellerWert, UntererWert, ObererWert From Nummernkreise Where NSchl = '"_sql,
          value(range), "' And Buchungskreis = "_sql, number(bookingCircle), " And Aktiviert = 1"_sql));
  if (rows->eof()) return std::nullopt;
  const auto whole = [&](ColumnName column) -> std::int64_t {
    const auto number = rows->value(column).integer();
    if (!number)
      fail(range, bookingCircle,
           "hat als " + std::string(column.text()) + " keine ganze Zahl: '" + rows->text(column) + "'.");
    return *number;
  };
  RangeState state;
  if (!rows->value("aktuellerWert").isNull()) state.current = whole("aktuellerWert");
  if (!rows->value("ObererWert").isEmpty()) state.last = std::min(state.last, whole("ObererWert"));
  if (!rows->value("UntererWert").isEmpty()) state.first = whole("UntererWert");
  state.row = std::move(rows);
  return state;
}

std::int64_t nextOf(const RangeState& state) {
  return std::max(std::min(state.current, state.last) + 1, state.first);
}

/// The old value in the condition detects another program's draw in between.
Sql advance(const RangeState& state, std::string_view range, std::int16_t bookingCircle) {
  return sql("Update Nummernkreise Set aktuellerWert = "_sql, number(nextOf(state)), " Where NSchl = '"_sql,
             value(range), "' And Buchungskreis = "_sql, number(bookingCircle),
             " And Aktiviert = 1 And coalesce(aktuellerWert,0) = "_sql, number(state.current));
}

/// Keeps other programs from drawing until the caller's unit ends. On a host's connection it only helps.
void keepRange(Connection& connection, std::string_view range, std::int16_t bookingCircle) {
  connection.execute(sql("Update Nummernkreise Set NSchl = NSchl Where NSchl = '"_sql, value(range),
                         "' And Buchungskreis = "_sql, number(bookingCircle)));
}

} // namespace

std::optional<std::int32_t> NumberRanges::draw(Connection& connection, std::string_view range,
                                               std::int16_t bookingCircle) {
  // The first draw of a unit locks the row, so that the further ones know its value.
  State& known = known_[{std::string(range), bookingCircle}];
  if (known.connection == &connection && known.epoch == connection.epoch()) {
    if (nextOf(known) > known.last) return std::nullopt;
    known.current = nextOf(known);
    known.row->set("aktuellerWert", Value(known.current));
    known.row->update();
    return static_cast<std::int32_t>(known.current);
  }
  for (int tries = 0; tries < mostTries; ++tries) {
    // Nobody is in the way as a rule, so that it is worth a statement only after another program was quicker.
    if (tries > 0) keepRange(connection, range, bookingCircle);
    auto state = readRange(connection, range, bookingCircle);
    if (!state || nextOf(*state) > state->last) return std::nullopt;
    if (connection.execute(advance(*state, range, bookingCircle)) == 0) continue;
    known = *state;
    known.current = nextOf(*state);
    known.connection = &connection;
    known.epoch = connection.epoch();
    return static_cast<std::int32_t>(known.current);
  }
  fail(range, bookingCircle, "nimmt keine neue Nummer an.");
}

} // namespace qx::erp
