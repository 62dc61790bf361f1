#include "cli/stage_value.h"

#include "model/date.h"
#include "model/text.h"
#include "store/staging_writer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace qx::cli {
namespace {

std::string expected(std::string_view what, const StageValue& value) {
  return std::string(what) + " is expected, not " + std::string(describe(value));
}

bool isDate(std::string_view text, DateRule rule) {
  if (text.empty() || parseGermanDateTime(text)) return true;
  if (rule.openEnd && text == openContractEnd) return true;
  return rule.contract && (text == "00:00:00" || text == "12:00:00 AM");
}

template <class Number>
std::optional<std::string> assignWhole(const StageValue& value, Number& property) {
  constexpr double least = std::numeric_limits<Number>::min();
  constexpr double most = std::numeric_limits<Number>::max();
  double number = 0;
  if (const auto* whole = std::get_if<std::int64_t>(&value))
    number = static_cast<double>(*whole);
  else if (const auto* broken = std::get_if<double>(&value))
    number = *broken;
  else
    return expected("a whole number", value);
  if (number != std::trunc(number)) return "a whole number is expected";
  if (number < least || number > most)
    return "the number must lie between " + std::to_string(std::numeric_limits<Number>::min()) + " and " +
           std::to_string(std::numeric_limits<Number>::max());
  property = static_cast<Number>(number);
  return std::nullopt;
}

} // namespace

std::size_t jobFileLength(std::string_view text) {
  constexpr std::size_t shortText = 4096;
  if (text.size() < shortText) return text.size();
  return characterCount(text);
}

std::string_view describe(const StageValue& value) {
  constexpr std::array<std::string_view, 5> names{"null", "a truth value", "a number", "a number", "a text"};
  return names.at(value.index());
}

std::optional<std::string> assign(StageValue& value, std::string& property, FieldKind kind, DateRule rule) {
  auto* text = std::get_if<std::string>(&value);
  if (text == nullptr) return expected("a text", value);
  if (text->find('\0') != std::string::npos) return "a text must not hold the character NUL";
  if (kind == FieldKind::Date && !isDate(*text, rule)) return "'" + *text + "' is not a date (dd.mm.yyyy)";
  property = std::move(*text);
  return std::nullopt;
}

std::optional<std::string> assign(StageValue& value, std::int16_t& property, FieldKind /*kind*/,
                                  DateRule /*rule*/) {
  return assignWhole(value, property);
}

std::optional<std::string> assign(StageValue& value, std::int32_t& property, FieldKind /*kind*/,
                                  DateRule /*rule*/) {
  return assignWhole(value, property);
}

std::optional<std::string> assign(StageValue& value, double& property, FieldKind /*kind*/,
                                  DateRule /*rule*/) {
  if (const auto* whole = std::get_if<std::int64_t>(&value))
    property = static_cast<double>(*whole);
  else if (const auto* number = std::get_if<double>(&value))
    property = *number;
  else
    return expected("a number", value);
  return std::nullopt;
}

std::optional<std::string> assign(StageValue& value, bool& property, FieldKind /*kind*/, DateRule /*rule*/) {
  const auto* truth = std::get_if<bool>(&value);
  if (truth == nullptr) return expected("true or false", value);
  property = *truth;
  return std::nullopt;
}

} // namespace qx::cli
