#include "store/feed_cursor.h"

#include "model/text.h"

#include <charconv>

namespace qx {
namespace {

/// The cursor of a feed in which nothing has been written yet.
constexpr std::string_view start = "start";
constexpr std::size_t digitCount = 8;
/// Those of a change that has been deleted: nobody can compare them.
constexpr std::string_view noDigits = "00000000";

std::string digitsOf(const ToldChange& change) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::uint64_t hash = textHash(change.change.jobId + '|' + std::to_string(change.change.jobType) + '|' +
                                change.moment + '|' + std::to_string(change.sequence));
  std::string text;
  for (; text.size() < digitCount; hash >>= 4U) text += digits[hash % digits.size()];
  return text;
}

struct CursorParts {
  std::string_view identity;
  std::int64_t number = 0;
  std::string_view digits;
};

std::optional<CursorParts> partsOf(std::string_view cursor) {
  const auto first = cursor.find('-');
  const auto last = cursor.rfind('-');
  if (first == std::string_view::npos || first == last) return std::nullopt;
  CursorParts parts{cursor.substr(0, first), 0, cursor.substr(last + 1)};
  const std::string_view number = cursor.substr(first + 1, last - first - 1);
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), parts.number);
  if (error != std::errc() || end != number.data() + number.size() || parts.number < 0 ||
      parts.digits.size() != digitCount || parts.identity.size() != digitCount)
    return std::nullopt;
  return parts;
}

} // namespace

FeedReader::FeedReader(Connection& connection) : connection_(connection) {
  const auto counter =
      connection.open(sql("Select Stand, Kennung From Zaehlerstaende Where Zaehler = 'Zustandswechsel'"_sql));
  if (counter->eof()) return;
  identity_ = counter->text("Kennung");
  last_ = counter->value("Stand").integer().value_or(0);
  const auto first = connection.open(sql("Select Min(Folge) As Folge From Zustandswechsel"_sql));
  purged_ = first->value("Folge").integer().value_or(last_ + 1) - 1;
}

CursorRefusal FeedReader::find(std::string_view cursor, std::int64_t& number) const {
  number = 0;
  if (cursor != start) {
    const auto parts = partsOf(cursor);
    if (!parts) return CursorRefusal::Unreadable;
    if (parts->identity != identity_) return CursorRefusal::OtherDatabase;
    number = parts->number;
    if (number > last_) return CursorRefusal::NotHere;
    // Of the change before the first one only the number is known.
    if (number > purged_ && parts->digits != digitsOf(number)) return CursorRefusal::NotHere;
  }
  return number < purged_ ? CursorRefusal::Purged : CursorRefusal::None;
}

std::int64_t FeedReader::before(std::string_view moment) const {
  const auto first = connection_.open(sql(
      "Select Min(Folge) As Folge From Zustandswechsel Where Zeitpunkt >= '"_sql, value(moment), "'"_sql));
  return first->value("Folge").integer().value_or(last_ + 1) - 1;
}

std::unique_ptr<Recordset> FeedReader::changesBehind(std::int64_t number) const {
  return connection_.openStream(sql("Select Folge, JobID, JobType, Nummer, Fehlertext, Zeitpunkt From "
                                    "Zustandswechsel Where Folge > "_sql,
                                    qx::number(number), " Order By Folge"_sql));
}

std::string FeedReader::cursorBehind(const ToldChange& change) const {
  return identity_ + '-' + std::to_string(change.sequence) + '-' + qx::digitsOf(change);
}

std::string FeedReader::cursorAt(std::int64_t number) const {
  if (identity_.empty()) return std::string(start);
  return identity_ + '-' + std::to_string(number) + '-' + digitsOf(number);
}

std::string FeedReader::digitsOf(std::int64_t number) const {
  const auto row = connection_.open(sql("Select Folge, JobID, JobType, Nummer, Fehlertext, Zeitpunkt From "
                                        "Zustandswechsel Where Folge = "_sql,
                                        qx::number(number)));
  return row->eof() ? std::string(noDigits) : qx::digitsOf(toldChange(*row));
}

} // namespace qx
