#include "cli/stage_value.h"

#include "cli/close_words.h"
#include "model/date.h"
#include "model/text.h"
#include "store/staging_writer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <system_error>
#include <utility>

namespace qx::cli {
namespace {

ValueFault expected(std::string_view what, const StageValue& value, std::string hint = {}) {
  return {FaultKind::WrongKind, std::string(what) + " is expected, not " + std::string(describe(value)),
          std::move(hint)};
}

/// The number as it was probably written.
std::string numberText(const StageValue& value) {
  if (const auto* whole = std::get_if<std::int64_t>(&value)) return std::to_string(*whole);
  std::array<char, 32> buffer{};
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::get<double>(value));
  return {buffer.data(), written.ptr};
}

std::string quotesHint(const StageValue& value) {
  const bool isNumber = std::holds_alternative<std::int64_t>(value) || std::holds_alternative<double>(value);
  return isNumber ? "write it in quotes: \"" + numberText(value) + "\"" : std::string();
}

/// For a number that was given as a text.
std::string noQuotesHint(const StageValue& value) {
  const auto* text = std::get_if<std::string>(&value);
  double number = 0;
  if (text == nullptr || text->empty()) return {};
  const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), number);
  return error == std::errc() && end == text->data() + text->size() ? "write it without quotes: " + *text
                                                                    : std::string();
}

bool isDate(std::string_view text, DateRule rule) {
  if (text.empty() || parseGermanDateTime(text)) return true;
  if (rule.openEnd && text == openContractEnd) return true;
  return rule.contract && (text == "00:00:00" || text == "12:00:00 AM");
}

template <class Number>
std::optional<ValueFault> assignWhole(const StageValue& value, Number& property) {
  constexpr double least = std::numeric_limits<Number>::min();
  constexpr double most = std::numeric_limits<Number>::max();
  double number = 0;
  if (const auto* whole = std::get_if<std::int64_t>(&value))
    number = static_cast<double>(*whole);
  else if (const auto* broken = std::get_if<double>(&value))
    number = *broken;
  else
    return expected("a whole number", value, noQuotesHint(value));
  if (number != std::trunc(number)) return ValueFault{FaultKind::WrongKind, "a whole number is expected", {}};
  if (number < least || number > most)
    return ValueFault{FaultKind::OutOfRange,
                      "the number must lie between " + std::to_string(std::numeric_limits<Number>::min()) +
                          " and " + std::to_string(std::numeric_limits<Number>::max()),
                      {}};
  property = static_cast<Number>(number);
  return std::nullopt;
}

} // namespace

std::size_t jobFileLength(std::string_view text) {
  constexpr std::size_t shortText = 4096;
  if (text.size() < shortText) return text.size();
  return characterCount(text);
}

ValueFault unknownProperty(std::string_view name, const std::vector<std::string>& known) {
  const std::string meant = closestWord(name, known);
  return {FaultKind::PropertyUnknown, "the type has no such property",
          meant.empty() ? std::string() : "did you mean \"" + meant + "\"?"};
}

ValueFault repeatedProperty(std::int64_t line) {
  return {FaultKind::PropertyRepeated, "the property is already given on line " + std::to_string(line), {}};
}

std::string_view describe(const StageValue& value) {
  constexpr std::array<std::string_view, 5> names{"null", "a truth value", "a number", "a number", "a text"};
  return names.at(value.index());
}

std::optional<ValueFault> assign(StageValue& value, std::string& property, FieldKind kind, DateRule rule) {
  auto* text = std::get_if<std::string>(&value);
  if (text == nullptr) return expected("a text", value, quotesHint(value));
  if (text->find('\0') != std::string::npos)
    return ValueFault{FaultKind::ForbiddenCharacter, "a text must not hold the character NUL", {}};
  if (kind == FieldKind::Date && !isDate(*text, rule)) {
    const auto day = parseIsoDate(*text);
    if (!day)
      return ValueFault{FaultKind::NotADate, "'" + *text + "' is not a date (dd.mm.yyyy or yyyy-mm-dd)", {}};
    property = germanDate(*day);
    return std::nullopt;
  }
  property = std::move(*text);
  return std::nullopt;
}

std::optional<ValueFault> assign(StageValue& value, std::int16_t& property, FieldKind /*kind*/,
                                 DateRule /*rule*/) {
  return assignWhole(value, property);
}

std::optional<ValueFault> assign(StageValue& value, std::int32_t& property, FieldKind /*kind*/,
                                 DateRule /*rule*/) {
  return assignWhole(value, property);
}

std::optional<ValueFault> assign(StageValue& value, double& property, FieldKind /*kind*/, DateRule /*rule*/) {
  if (const auto* whole = std::get_if<std::int64_t>(&value))
    property = static_cast<double>(*whole);
  else if (const auto* number = std::get_if<double>(&value))
    property = *number;
  else
    return expected("a number", value, noQuotesHint(value));
  return std::nullopt;
}

std::optional<ValueFault> assign(StageValue& value, bool& property, FieldKind /*kind*/, DateRule /*rule*/) {
  const auto* truth = std::get_if<bool>(&value);
  if (truth == nullptr) return expected("true or false", value);
  property = *truth;
  return std::nullopt;
}

} // namespace qx::cli
