#include "platform/sql.h"

namespace qx {

Sql& Sql::append(const Sql& part) {
  shapes_.insert(shapes_.end(), part.shapes_.begin(), part.shapes_.end());
  values_.insert(values_.end(), part.values_.begin(), part.values_.end());
  names_.insert(names_.end(), part.names_.begin(), part.names_.end());
  return *this;
}

std::string Sql::text() const {
  std::string text;
  auto nextValue = values_.begin();
  auto nextName = names_.begin();
  for (const SqlShape* shape : shapes_)
    for (const SqlPiece& piece : shape->pieces) switch (piece.slot) {
      case SqlSlot::Fixed:
        text += piece.text;
        break;
      case SqlSlot::Text:
      case SqlSlot::Number:
        text += (nextValue++)->text();
        break;
      case SqlSlot::Name:
        text += *nextName++;
        break;
      }
  return text;
}

} // namespace qx
