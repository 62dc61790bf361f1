#include "erp/standalone_adressindex.h"

namespace qx {

std::string searchForm(std::string_view text) {
  std::string form(text);
  for (std::size_t i = 0; i < form.size(); ++i) {
    const auto byte = static_cast<unsigned char>(form[i]);
    if (byte >= 'A' && byte <= 'Z') form[i] = static_cast<char>(byte + ('a' - 'A'));
    if (byte != 0xC3 || i + 1 == form.size()) continue;
    // The capitals of U+00C0 to U+00DE, the multiplication sign excepted.
    const auto second = static_cast<unsigned char>(form[i + 1]);
    if (second >= 0x80 && second <= 0x9E && second != 0x97) form[i + 1] = static_cast<char>(second + 0x20);
    ++i;
  }
  return form;
}

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
    words += searchForm(word);
  }
  connection_.insert(
      "Adressindex",
      sql("Insert Into Adressindex (Kundennummer, Art, Suchtext) Values ('"_sql,
          value(rows->text("Kundennummer")), "', "_sql, number(kind), ", '"_sql, value(words),
          "') On Conflict (Kundennummer, Art) Do Update Set Suchtext = excluded.Suchtext"_sql));
}

} // namespace qx
