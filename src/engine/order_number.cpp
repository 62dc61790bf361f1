#include "engine/order_number.h"

#include "engine/order_failure.h"
#include "model/text.h"
#include "platform/failure.h"

#include <string>
#include <utility>

namespace qx {
namespace {

constexpr std::string_view range = "AB";

} // namespace

std::optional<std::int16_t> OrderNumbers::bookingCircle(const JobRow& job) {
  // Marked orders of this one-time customer use the booking circle of their sales representative.
  if (firstCharacters(job.text("Kundennummer"), 5) == "14999" && job.text("IndFild1") == "ZB") {
    return wholeAs<std::int16_t>(job.value("Vertreter1"));
  }
  if (!sessionCircle_ || options_.circlePerOrder) sessionCircle_ = environment_.session->GetBuchungskreis();
  return sessionCircle_;
}

OrderNumber OrderNumbers::draw(const JobRow& job) {
  if (!environment_.session) throw OrderFailure(Rule::OrderNumberNone);
  const auto circle = bookingCircle(job);
  if (!circle) throw OrderFailure(Rule::OrderNumberNone);
  requireRange(*circle);
  const auto drawn = environment_.session->GetBelegnummer(range, *circle);
  if (!drawn) throw OrderFailure(Rule::OrderNumberNone);
  drawnFrom_ = {*circle, environment_.connection->epoch()};
  pending_ = OrderNumber{*drawn, *circle};
  foreign_ = false;
  return *pending_;
}

/// Once it has been drawn from, no other program changes it until the unit ends.
void OrderNumbers::requireRange(std::int16_t circle) {
  if (drawnFrom_ == std::pair(circle, environment_.connection->epoch())) return;
  const auto active = environment_.connection->open(sql("SELECT * From Nummernkreise Where NSchl ='"_sql,
                                                        value(range), "' AND Buchungskreis = "_sql,
                                                        number(circle), " AND Aktiviert =1"_sql));
  if (active->eof()) throw OrderFailure(Rule::OrderNumberNone);
}

void OrderNumbers::removeLines() {
  if (!pending_ || foreign_) return;
  environment_.connection->execute(sql("Delete From Auftragspos Where Auftragsnummer = '"_sql,
                                       value(std::to_string(pending_->number)), "'"_sql));
}

void OrderNumbers::forget() {
  const auto drawn = std::exchange(pending_, std::nullopt);
  if (!drawn || !foreign_) return;
  // Unless another program has drawn it meanwhile.
  trapped(environment_.diagnostics, {"order number in use", {}, &isFatal}, [&] {
    environment_.connection->execute(sql("Update Nummernkreise Set aktuellerWert = "_sql,
                                         number(drawn->number), " Where NSchl = 'AB' And Buchungskreis ="_sql,
                                         number(drawn->circle), " And coalesce(aktuellerWert,0) < "_sql,
                                         number(drawn->number)));
  });
}

void OrderNumbers::giveBack() {
  if (!pending_) return;
  const OrderNumber drawn = *pending_;
  pending_.reset();
  if (foreign_) return;
  const auto current = environment_.connection->open(
      sql("Select aktuellerWert From Nummernkreise Where NSchl = 'AB' And Buchungskreis ="_sql,
          number(drawn.circle)));
  if (current->eof()) return;
  // Deliberately without checking whether another number has been drawn meanwhile.
  current->set("aktuellerWert", Value(current->value("aktuellerWert").integer().value_or(0) - 1));
  current->update();
}

} // namespace qx
