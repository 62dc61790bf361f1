#include "erp/standalone_adressindex.h"

#include "model/text.h"

#include <array>

namespace qx::erp {

void StandaloneAdressindex::CreateIndex(std::string_view customer, std::int16_t kind) {
  const auto rows = connection_.open(sql("Select Kundennummer, Suchbegriff, Bez1, Bez2, Bez3, PLZ, Ort From "
                                         "Kundenstamm Where Kundennummer = '"_sql,
                                         value(customer), "'"_sql));
  if (rows->eof()) {
    connection_.execute(sql("Delete From Adressindex Where Kundennummer = '"_sql, value(customer),
                            "' And Art = "_sql, number(kind)));
    return;
  }
  std::string words;
  for (std::size_t i = 1; i < rows->fieldCount(); ++i) {
    const std::string word = rows->value(i).text();
    if (word.empty()) continue;
    if (!words.empty()) words += ' ';
    words += lowerCase(word);
  }
  const std::array<ColumnValue, 3> row{ColumnValue{"Kundennummer", rows->text("Kundennummer")},
                                       ColumnValue{"Art", kind}, ColumnValue{"Suchtext", words}};
  connection_.put("Adressindex", row, 2);
}

} // namespace qx::erp
