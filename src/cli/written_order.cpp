#include "cli/written_order.h"

#include <array>
#include <charconv>
#include <cstdint>

namespace qx::cli {
namespace {

constexpr std::array<ColumnName, 6> orderSumColumns{"Auftragsnummer", "Währung",    "Preistyp",
                                                    "Gesamtnetto",    "GesamtMwSt", "Gesamtbrutto"};
constexpr std::array<ColumnName, 7> orderLineColumns{
    "Positionsnummer", "Artikelnummer", "Menge", "Mengeneinheit", "Preis", "Preiseinheit", "Rabatt"};

} // namespace

WrittenOrder::WrittenOrder(Connection& connection, std::string_view number) {
  std::int64_t whole = 0;
  std::from_chars(number.data(), number.data() + number.size(), whole);
  if (whole == 0) return;
  header_ = connection.open(sql("Select * From Auftragskopf Where Auftragsnummer = "_sql, qx::number(whole)));
  lines_ = connection.open(sql("Select * From Auftragspos Where Zeilentyp = 'K' And Auftragsnummer = "_sql,
                               qx::number(whole), " Order By Positionsnummer"_sql));
}

void WrittenOrder::write(JsonWriter& json) {
  if (!header_ || header_->eof()) return;
  json.key("order").beginObject();
  for (const ColumnName column : orderSumColumns) json.key(column.text()).value(header_->value(column));
  json.key("lines").beginArray();
  for (; !lines_->eof(); lines_->moveNext()) {
    json.beginObject();
    for (const ColumnName column : orderLineColumns) json.key(column.text()).value(lines_->value(column));
    json.endObject();
  }
  json.endArray().endObject();
}

} // namespace qx::cli
