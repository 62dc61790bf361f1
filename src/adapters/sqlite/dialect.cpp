#include "adapters/sqlite/dialect.h"

#include "adapters/sqlite/merged_select.h"
#include "adapters/sqlite/select_parts.h"
#include "model/text.h"

#include <array>

namespace qx::sqlite {
namespace {

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
  for (std::size_t at = findWord(text, from); at != std::string::npos;
       at = findWord(text, from, at + to.size()))
    text.replace(at, from.size(), to);
}

/// The fixed text with a parameter in place of every value. The quotes around text values are notation and
/// are dropped.
std::string withParameters(const Sql& statement) {
  std::string text;
  auto nextName = statement.names().begin();
  bool afterText = false;
  for (const SqlShape* shape : statement.shapes())
    for (const SqlPiece& piece : shape->pieces) {
      switch (piece.slot) {
      case SqlSlot::Fixed:
        text += afterText ? piece.text.substr(1) : piece.text;
        break;
      case SqlSlot::Text:
        text.pop_back();
        text += '?';
        break;
      case SqlSlot::Number:
        text += '?';
        break;
      case SqlSlot::Name:
        text += quotedName(*nextName++);
        break;
      }
      afterText = piece.slot == SqlSlot::Text;
    }
  return text;
}

/// Takes "Top 2000" out of "Select Top 2000 ..." and returns the number; empty without one.
std::string takeTop(std::string& text) {
  constexpr std::string_view top = "select top ";
  if (text.size() < top.size() || !equalCodes(std::string_view(text).substr(0, top.size()), top)) return {};
  const auto end = text.find_first_not_of("0123456789", top.size());
  std::string count = text.substr(top.size(), end - top.size());
  text.erase(6, end - 6);
  return count;
}

/// "Convert(DateTime, X, 104)" becomes the chronological expression of X.
void rewriteConvert(std::string& text) {
  constexpr std::string_view call = "convert(datetime,";
  constexpr std::string_view style = ", 104)";
  for (auto at = findWord(text, call); at != std::string::npos; at = findWord(text, call)) {
    const auto end = text.find(style, at);
    if (end == std::string::npos) return;
    const auto first = text.find_first_not_of(' ', at + call.size());
    text.replace(at, end + style.size() - at,
                 chronological(std::string_view(text).substr(first, end - first)));
  }
}

/// "[ImportKopf]" alone selects the whole table.
void rewriteTableCommand(std::string& text) {
  if (text.size() > 2 && text.front() == '[' && text.find(']') == text.size() - 1)
    text = "SELECT * FROM " + text;
}

std::string dateNumber(std::string_view column, int dayLength, int monthLength) {
  const std::string x(column);
  const auto part = [&](int from, int length) {
    return "substr(" + x + "," + std::to_string(from) + "," + std::to_string(length) + ")+0";
  };
  const int monthAt = dayLength + 2;
  const int yearAt = monthAt + monthLength + 1;
  const std::string tail = "substr(" + x + "," + std::to_string(yearAt) + ")";
  const std::string day = "(" + part(1, dayLength) + ")";
  const std::string month = "(" + part(monthAt, monthLength) + ")";
  const std::string longYear = "(" + part(yearAt, 4) + ")";
  const std::string shortYear = "(" + part(yearAt, 2) + ")";
  const std::string fullShortYear =
      "(" + shortYear + "+CASE WHEN " + shortYear + "<30 THEN 2000 ELSE 1900 END)";

  const auto withTime = [&](const std::string& year) {
    std::string condition = tail + " GLOB '" + year + "'";
    for (const std::string_view hour : {"[0-9]", "[01][0-9]", "2[0-3]"})
      for (const std::string_view seconds : {"", ":[0-5][0-9]"})
        condition.append(" OR ")
            .append(tail)
            .append(" GLOB '")
            .append(year)
            .append(" ")
            .append(hour)
            .append(":[0-5][0-9]")
            .append(seconds)
            .append("'");
    return condition;
  };
  const auto checked = [&](const std::string& year) {
    const std::string leap = "(" + year + "%4=0 AND (" + year + "%100<>0 OR " + year + "%400=0))";
    return "CASE WHEN " + month + " BETWEEN 1 AND 12 AND " + day + " BETWEEN 1 AND CASE WHEN " + month +
           "=2 THEN 28+" + leap + " WHEN " + month + " IN (4,6,9,11) THEN 30 ELSE 31 END THEN " + year +
           "*10000+" + month + "*100+" + day + " END";
  };
  return "CASE WHEN " + withTime("[0-9][0-9][0-9][0-9]") + " THEN " + checked(longYear) + " WHEN " +
         withTime("[0-9][0-9]") + " THEN " + checked(fullShortYear) + " END";
}

} // namespace

std::string quotedName(std::string_view identifier) {
  std::string text = "\"";
  for (const char c : identifier) {
    if (c == '"') text += '"';
    text += c;
  }
  return text + '"';
}

std::string chronological(std::string_view column) {
  const std::string x(column);
  std::string text = "(CASE";
  for (const int day : {2, 1})
    for (const int month : {2, 1}) {
      const auto digits = [](int count) { return std::string(count == 2 ? "[0-9][0-9]" : "[0-9]"); };
      text += " WHEN " + x + " GLOB '" + digits(day) + "." + digits(month) + ".*' THEN " +
              dateNumber(column, day, month);
    }
  return text + " END)";
}

std::string translate(const Sql& statement) {
  std::string text = withParameters(statement);
  rewriteTableCommand(text);
  const std::string limit = takeTop(text);
  rewriteConvert(text);
  // SQLite reads LEFT and RIGHT as join keywords, so registered functions of those names would not help.
  replaceAll(text, "right(jobtype,1)", "substr(CAST(JobType AS TEXT),-1)");
  replaceAll(text, "left(jobtype,1)", "substr(CAST(JobType AS TEXT),1,1)");
  replaceAll(text, "isnull(", "coalesce(");
  replaceAll(text, ") + ' ' + coalesce(", ") || ' ' || coalesce(");
  replaceAll(text, "order by eingangsdatum", "Order by " + chronological("Eingangsdatum"));
  if (limit.empty()) return text;
  return mergedSelect(text, limit).value_or(text + " LIMIT " + limit);
}

} // namespace qx::sqlite
