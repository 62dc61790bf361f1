#include "erp/number_range.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <string>

namespace qx::erp {
namespace {

struct RangeState {
  std::int64_t current = 0;
  std::int64_t next = 0;
  std::int64_t last = std::numeric_limits<std::int32_t>::max();
};

constexpr int mostTries = 20;

[[noreturn]] void fail(std::string_view range, std::int16_t bookingCircle, const std::string& why) {
  throw std::runtime_error("Der Nummernkreis '" + std::string(range) + "' im Buchungskreis '" +
                           std::to_string(bookingCircle) + "' " + why);
}

std::optional<RangeState> readRange(Connection& connection, std::string_view range,
                                    std::int16_t bookingCircle) {
  const auto rows = connection.open(sql("Select aktuellerWert, UntererWert, ObererWert From Nummernkreise "
                                        "Where NSchl = '"_sql,
                                        value(range), "' And Buchungskreis = "_sql, number(bookingCircle),
                                        " And Aktiviert = 1"_sql));
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
  const std::int64_t first = rows->value("UntererWert").isEmpty() ? 1 : whole("UntererWert");
  state.next = std::max(std::min(state.current, state.last) + 1, first);
  return state;
}

/// Keeps other programs from drawing until the caller's unit ends. On a host's connection it only helps.
void keepRange(Connection& connection, std::string_view range, std::int16_t bookingCircle) {
  connection.execute(sql("Update Nummernkreise Set NSchl = NSchl Where NSchl = '"_sql, value(range),
                         "' And Buchungskreis = "_sql, number(bookingCircle)));
}

} // namespace

std::optional<std::int32_t> drawNumber(Connection& connection, std::string_view range,
                                       std::int16_t bookingCircle) {
  for (int tries = 0; tries < mostTries; ++tries) {
    // Nobody is in the way as a rule, so that it is worth a statement only after another program was quicker.
    if (tries > 0) keepRange(connection, range, bookingCircle);
    const auto state = readRange(connection, range, bookingCircle);
    if (!state || state->next > state->last) return std::nullopt;
    // The old value in the condition detects another program's draw in between; then it retries.
    const auto changed = connection.execute(
        sql("Update Nummernkreise Set aktuellerWert = "_sql, number(state->next), " Where NSchl = '"_sql,
            value(range), "' And Buchungskreis = "_sql, number(bookingCircle),
            " And Aktiviert = 1 And coalesce(aktuellerWert,0) = "_sql, number(state->current)));
    if (changed != 0) return static_cast<std::int32_t>(state->next);
  }
  fail(range, bookingCircle, "nimmt keine neue Nummer an.");
}

} // namespace qx::erp
