#include "erp/number_range.h"

#include <algorithm>
#include <limits>

namespace qx {
namespace {

struct RangeState {
  std::int64_t current = 0;
  std::int64_t next = 0;
  std::int64_t last = std::numeric_limits<std::int32_t>::max();
};

std::optional<RangeState> readRange(Connection& connection, std::string_view range,
                                    std::int16_t bookingCircle) {
  const auto rows = connection.open(sql("Select aktuellerWert, UntererWert, ObererWert, "
                                        "coalesce(aktuellerWert,0) as Stand From Nummernkreise "
                                        "Where NSchl = '"_sql,
                                        value(range), "' And Buchungskreis = "_sql, number(bookingCircle),
                                        " And Aktiviert = 1"_sql));
  if (rows->eof()) return std::nullopt;
  RangeState state;
  state.current = rows->value("Stand").integer().value_or(0);
  const auto first = rows->value("UntererWert").integer();
  state.next = std::max(state.current + 1, first.value_or(1));
  if (const auto last = rows->value("ObererWert").integer()) state.last = std::min(state.last, *last);
  return state;
}

} // namespace

std::optional<std::int32_t> drawNumber(Connection& connection, std::string_view range,
                                       std::int16_t bookingCircle) {
  for (;;) {
    const auto state = readRange(connection, range, bookingCircle);
    if (!state || state->next > state->last) return std::nullopt;
    // The old value in the condition tells when another program drew in between; then it is tried again.
    const auto changed = connection.execute(
        sql("Update Nummernkreise Set aktuellerWert = "_sql, number(state->next), " Where NSchl = '"_sql,
            value(range), "' And Buchungskreis = "_sql, number(bookingCircle),
            " And Aktiviert = 1 And coalesce(aktuellerWert,0) = "_sql, number(state->current)));
    if (changed != 0) return static_cast<std::int32_t>(state->next);
  }
}

} // namespace qx
