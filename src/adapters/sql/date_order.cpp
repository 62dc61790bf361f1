#include "adapters/sql/date_order.h"

#include <initializer_list>

namespace qx::relational {
namespace {

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

std::string chronologicalByParts(std::string_view column) {
  const std::string x(column);
  const auto part = [&](int from, int length) {
    return "substr(" + x + "," + std::to_string(from) + "," + std::to_string(length) + ")";
  };
  // Nearly all dates are of this form, whose days every month has; the index computes it with each change.
  std::string text = "(CASE WHEN " + x + " GLOB '[0-9][0-9].[0-9][0-9].[0-9][0-9][0-9][0-9]' AND " +
                     part(1, 2) + " BETWEEN '01' AND '28' AND " + part(4, 2) +
                     " BETWEEN '01' AND '12' THEN CAST(" + part(7, 4) + "||" + part(4, 2) + "||" +
                     part(1, 2) + " AS INTEGER)";
  for (const int day : {2, 1})
    for (const int month : {2, 1}) {
      const auto digits = [](int count) { return std::string(count == 2 ? "[0-9][0-9]" : "[0-9]"); };
      text += " WHEN " + x + " GLOB '" + digits(day) + "." + digits(month) + ".*' THEN " +
              dateNumber(column, day, month);
    }
  return text + " END)";
}

std::string chronologicalByRegex(std::string_view column) {
  const std::string x = std::string(column) + " COLLATE \"C\"";
  const auto part = [&](std::string_view text, int index) {
    return "CAST(split_part(" + std::string(text) + ",'.'," + std::to_string(index) + ") AS INTEGER)";
  };
  const std::string date = "split_part(" + x + ",' ',1)";
  const std::string day = part(date, 1);
  const std::string month = part(date, 2);
  const std::string written = part(date, 3);
  const std::string year = "(CASE WHEN length(split_part(" + date + ",'.',3))=4 THEN 0 WHEN " + written +
                           "<30 THEN 2000 ELSE 1900 END+" + written + ")";
  const std::string leap =
      "CASE WHEN " + year + "%4=0 AND (" + year + "%100<>0 OR " + year + "%400=0) THEN 29 ELSE 28 END";
  // Neither braces nor question marks: what stands between statement and server reads them in its own way.
  return "(CASE WHEN " + x +
         " ~ '^([0-9]|[0-9][0-9])[.]([0-9]|[0-9][0-9])[.]([0-9][0-9]|[0-9][0-9][0-9][0-9])"
         "(| ([0-9]|[01][0-9]|2[0-3]):[0-5][0-9](|:[0-5][0-9]))$' THEN CASE WHEN " +
         month + " BETWEEN 1 AND 12 AND " + day + " BETWEEN 1 AND CASE WHEN " + month + "=2 THEN " + leap +
         " WHEN " + month + " IN (4,6,9,11) THEN 30 ELSE 31 END THEN " + year + "*10000+" + month + "*100+" +
         day + " END END)";
}

std::string chronologicalByConversion(std::string_view column) {
  // Digits are those of ASCII only where texts compare by their codes.
  const std::string x = std::string(column) + " COLLATE Latin1_General_100_BIN2";
  const auto anyOf = [](const std::string& text, std::initializer_list<const char*> patterns) {
    std::string condition;
    for (const char* const pattern : patterns)
      condition.append(condition.empty() ? "(" : " OR ").append(text).append(" LIKE '").append(pattern) +=
          "'";
    return condition + ")";
  };
  const std::string blank = "CHARINDEX(' ', " + x + " + ' ')";
  const std::string date = "LEFT(" + x + ", " + blank + " - 1)";
  const std::string time = "SUBSTRING(" + x + ", " + blank + ", 12)";
  const std::string firstDot = "CHARINDEX('.', " + x + ")";
  const std::string secondDot = "CHARINDEX('.', " + x + ", " + firstDot + " + 1)";
  const std::string day = "RIGHT('0' + LEFT(" + x + ", " + firstDot + " - 1), 2)";
  const std::string month =
      "RIGHT('0' + SUBSTRING(" + x + ", " + firstDot + " + 1, " + secondDot + " - " + firstDot + " - 1), 2)";
  const std::string written = "SUBSTRING(" + date + ", " + secondDot + " + 1, 4)";
  const std::string year = "CASE WHEN LEN(" + written + ") = 4 THEN '' WHEN " + written +
                           " < '30' THEN '20' ELSE '19' END + " + written;
  const std::string form =
      anyOf(date, {"[0-9].[0-9].[0-9][0-9]", "[0-9].[0-9].[0-9][0-9][0-9][0-9]",
                   "[0-9].[0-9][0-9].[0-9][0-9]", "[0-9].[0-9][0-9].[0-9][0-9][0-9][0-9]",
                   "[0-9][0-9].[0-9].[0-9][0-9]", "[0-9][0-9].[0-9].[0-9][0-9][0-9][0-9]",
                   "[0-9][0-9].[0-9][0-9].[0-9][0-9]", "[0-9][0-9].[0-9][0-9].[0-9][0-9][0-9][0-9]"});
  const std::string clock =
      anyOf(time, {"", " [0-9]:[0-5][0-9]", " [01][0-9]:[0-5][0-9]", " 2[0-3]:[0-5][0-9]",
                   " [0-9]:[0-5][0-9]:[0-5][0-9]", " [01][0-9]:[0-5][0-9]:[0-5][0-9]",
                   " 2[0-3]:[0-5][0-9]:[0-5][0-9]"});
  return "(CASE WHEN " + form + " AND " + clock + " THEN CAST(CONVERT(CHAR(8), TRY_CONVERT(DATE, " + year +
         " + " + month + " + " + day + ", 112), 112) AS INT) END)";
}

} // namespace qx::relational
