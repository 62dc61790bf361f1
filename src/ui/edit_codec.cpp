#include "ui/edit_codec.h"

#include "model/date.h"
#include "model/german_text.h"

#include <cmath>

namespace qx {

ControlKind editorOf(GridColumnKind kind) {
  switch (kind) {
  case GridColumnKind::LongText:
    return ControlKind::Note;
  case GridColumnKind::Number:
  case GridColumnKind::Money:
    return ControlKind::Number;
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
  const auto number = kind == ControlKind::Number ? stored.number() : std::nullopt;
  return number ? germanNumber(*number) : stored.text();
}

std::string refusalOf(ControlKind kind, std::string_view typed) {
  if (typed.empty()) return {};
  const auto because = [&](std::string_view reason) {
    return "'" + std::string(typed) + "' ist " + std::string(reason);
  };
  if (kind == ControlKind::Date && !parseGermanDate(typed)) return because("kein Datum (tt.mm.jjjj).");
  if (kind == ControlKind::Check && !parseGermanBoolean(typed))
    return because("weder ja noch nein (1 oder 0).");
  if (kind != ControlKind::Number) return {};
  const auto number = parseEnteredNumber(typed);
  if (!number) return because("keine Zahl.");
  return std::abs(*number) <= largestNumber ? std::string() : because("zu groß.");
}

std::string respelt(ControlKind kind, std::string_view typed) {
  if (kind == ControlKind::Number)
    if (const auto number = parseEnteredNumber(typed)) return germanNumber(*number);
  if (kind == ControlKind::Date)
    if (const auto date = parseGermanDate(typed)) return germanDate(*date);
  return std::string(typed);
}

} // namespace qx
