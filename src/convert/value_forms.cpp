#include "convert/value_forms.h"

#include "model/date.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace qx::convert {
namespace {

/// The most digits that a stored number keeps.
constexpr std::size_t mostDigits = 15;
constexpr std::size_t digitsOfGroup = 3;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Takes the digits off the front.
std::string_view takeDigits(std::string_view& text) {
  const auto length = static_cast<std::size_t>(std::ranges::find_if_not(text, isDigit) - text.begin());
  const std::string_view digits = text.substr(0, length);
  text.remove_prefix(length);
  return digits;
}

/// Takes the whole part off the front, its groups joined; empty when there is none.
std::string takeWhole(std::string_view& text, char thousands) {
  std::string whole(takeDigits(text));
  if (thousands == '\0' || whole.empty() || whole.size() > digitsOfGroup) return whole;
  while (text.starts_with(thousands)) {
    std::string_view rest = text.substr(1);
    const std::string_view group = takeDigits(rest);
    if (group.size() != digitsOfGroup) return {};
    whole += group;
    text = rest;
  }
  return whole;
}

/// The digits of a number as JSON writes it; null when the text has another form.
struct Digits {
  std::string json;
  std::size_t significant = 0;
};

std::optional<Digits> digitsOf(std::string_view text, const ValueForms& forms, bool fraction) {
  Digits number;
  if (text.starts_with('-')) {
    number.json = "-";
    text.remove_prefix(1);
  }
  std::string digits = takeWhole(text, forms.thousands);
  if (digits.empty()) return std::nullopt;
  // JSON knows no leading zeros.
  digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size() - 1));
  number.json += digits;
  if (fraction && text.starts_with(forms.decimal)) {
    text.remove_prefix(1);
    const std::string_view decimals = takeDigits(text);
    if (decimals.empty()) return std::nullopt;
    number.json.append(".").append(decimals);
    digits += decimals;
  }
  if (!text.empty()) return std::nullopt;
  const std::size_t first = digits.find_first_not_of('0');
  if (first != std::string::npos) number.significant = digits.find_last_not_of('0') - first + 1;
  return number;
}

std::string describeNumber(const ValueForms& forms) {
  std::string text = forms.decimal == ',' ? "a number with decimal comma" : "a number with decimal point";
  if (forms.thousands == '\0') return text + " and without signs between thousands";
  return text + " and '" + std::string(1, forms.thousands) + "' between thousands";
}

template <class Whole>
bool fits(const std::string& json) {
  Whole number = 0;
  const char* const end = json.data() + json.size();
  const auto [stopped, error] = std::from_chars(json.data(), end, number);
  return error == std::errc() && stopped == end;
}

std::optional<std::string> appendWhole(std::string& json, std::string_view text, FieldKind kind,
                                       const ValueForms& forms) {
  const auto number = digitsOf(text, forms, false);
  if (!number) return "is not a whole number";
  if (kind == FieldKind::Int16 ? !fits<std::int16_t>(number->json) : !fits<std::int32_t>(number->json))
    return kind == FieldKind::Int16 ? "is not a number from -32768 to 32767"
                                    : "is not a number from -2147483648 to 2147483647";
  json += number->json;
  return std::nullopt;
}

std::optional<std::string> appendNumber(std::string& json, std::string_view text, const ValueForms& forms) {
  const auto number = digitsOf(text, forms, true);
  if (!number) return "is not " + describeNumber(forms);
  if (number->significant > mostDigits || number->json.size() > 2 * mostDigits)
    return "has more than the 15 digits that are kept of a number";
  json += number->json;
  return std::nullopt;
}

/// The number that a run of a pattern stands for; null when other characters stand there.
std::optional<int> takeField(std::string_view& text, std::size_t digits) {
  std::size_t length = digits;
  if (digits == 1 && text.size() > 1 && isDigit(text[1])) length = 2;
  if (text.size() < length || !std::ranges::all_of(text.substr(0, length), isDigit)) return std::nullopt;
  int field = 0;
  std::from_chars(text.data(), text.data() + length, field);
  text.remove_prefix(length);
  return field;
}

/// Takes the run of one letter off the front.
std::size_t takeRun(std::string_view& pattern) {
  const std::size_t length = std::min(pattern.find_first_not_of(pattern.front()), pattern.size());
  pattern.remove_prefix(length);
  return length;
}

bool isField(char c) { return c == 'd' || c == 'm' || c == 'y'; }

std::optional<Date> dateOf(std::string_view text, std::string_view pattern) {
  int day = 0;
  int month = 0;
  int year = 0;
  while (!pattern.empty()) {
    const char letter = pattern.front();
    if (isField(letter)) {
      const auto field = takeField(text, takeRun(pattern));
      if (!field) return std::nullopt;
      (letter == 'd' ? day : letter == 'm' ? month : year) = *field;
      continue;
    }
    if (text.empty() || (letter == '#' ? !isDigit(text.front()) : text.front() != letter))
      return std::nullopt;
    text.remove_prefix(1);
    pattern.remove_prefix(1);
  }
  const Date date = makeDate(year, static_cast<unsigned>(month), static_cast<unsigned>(day));
  if (!text.empty() || !date.ok() || year == 0) return std::nullopt;
  return date;
}

} // namespace

ValueForms jobFileForms() { return {'.', '\0', "dd.mm.yyyy"}; }

std::optional<std::string> faultOfDatePattern(std::string_view pattern) {
  int days = 0;
  int months = 0;
  int years = 0;
  while (!pattern.empty()) {
    const char letter = pattern.front();
    if (!isField(letter)) {
      pattern.remove_prefix(1);
      continue;
    }
    const std::size_t length = takeRun(pattern);
    if (letter == 'y' ? length != 4 : length > 2)
      return "years have the form yyyy, days d or dd, months m or mm";
    ++(letter == 'd' ? days : letter == 'm' ? months : years);
  }
  if (days == 1 && months == 1 && years == 1) return std::nullopt;
  return "day, month and year are expected once each, as in dd.mm.yyyy or yyyy-mm-dd";
}

std::optional<std::string> appendValue(std::string& json, std::string_view text, FieldKind kind,
                                       const ValueForms& forms) {
  switch (kind) {
  case FieldKind::Int16:
  case FieldKind::Int32:
    return appendWhole(json, text, kind, forms);
  case FieldKind::Double:
    return appendNumber(json, text, forms);
  case FieldKind::Boolean:
    if (text != "true" && text != "false")
      return "is neither true nor false; a table of values translates it";
    json += text;
    return std::nullopt;
  case FieldKind::Date:
    if (const auto date = dateOf(text, forms.date)) {
      appendText(json, germanDate(*date));
      return std::nullopt;
    }
    return "is not a date of the form " + forms.date;
  case FieldKind::Text:
    break;
  }
  appendText(json, text);
  return std::nullopt;
}

void appendText(std::string& json, std::string_view text) {
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
  json.append(buffer.GetString(), buffer.GetSize());
}

} // namespace qx::convert
