#include "ui/edit_codec.h"

#include "model/date.h"
#include "model/german_text.h"

#include <cmath>

namespace qx {

namespace {

/// All digits, but two decimals at least.
std::string moneyText(double amount) {
  constexpr std::size_t decimals = 2;
  std::string text = germanNumber(amount);
  if (text.find('E') != std::string::npos) return text;
  const std::size_t comma = text.find(',');
  if (comma == std::string::npos) return text + ",00";
  const std::size_t given = text.size() - comma - 1;
  return given < decimals ? text + '0' : text;
}

std::string numberText(ControlKind kind, double number) {
  return kind == ControlKind::Money ? moneyText(number) : germanNumber(number);
}

} // namespace

ControlKind editorOf(GridColumnKind kind) {
  switch (kind) {
  case GridColumnKind::LongText:
    return ControlKind::Note;
  case GridColumnKind::Number:
    return ControlKind::Number;
  case GridColumnKind::Money:
    return ControlKind::Money;
  case GridColumnKind::Date:
    return ControlKind::Date;
  case GridColumnKind::Check:
    return ControlKind::Check;
  case GridColumnKind::Text:
  case GridColumnKind::Unit:
  case GridColumnKind::Picture:
  case GridColumnKind::Button:
    break;
  }
  return ControlKind::Text;
}

std::string editedText(ControlKind kind, const Value& stored) {
  if (kind == ControlKind::Check) return stored.truth().value_or(false) ? "1" : "0";
  const auto number = isNumeric(kind) ? stored.number() : std::nullopt;
  return number ? numberText(kind, *number) : stored.text();
}

std::string refusalOf(ControlKind kind, std::string_view typed) {
  if (typed.empty()) return {};
  const auto because = [&](std::string_view reason) {
    return "'" + std::string(typed) + "' ist " + std::string(reason);
  };
  if (kind == ControlKind::Date && !parseGermanDate(typed)) return because("kein Datum (tt.mm.jjjj).");
  if (kind == ControlKind::Check && !parseGermanBoolean(typed))
    return because("weder ja noch nein (1 oder 0).");
  if (!isNumeric(kind)) return {};
  const auto number = parseEnteredNumber(typed);
  if (!number) return because("keine Zahl.");
  return std::abs(*number) <= largestNumber ? std::string() : because("zu groß.");
}

std::string respelt(ControlKind kind, std::string_view typed) {
  if (isNumeric(kind))
    if (const auto number = parseEnteredNumber(typed)) return numberText(kind, *number);
  if (kind == ControlKind::Date)
    if (const auto date = parseGermanDate(typed)) return germanDate(*date);
  return std::string(typed);
}

} // namespace qx
