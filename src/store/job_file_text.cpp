#include "store/job_file_text.h"

namespace qx {

void appendFileField(std::string& line, std::string_view text) {
  line += '"';
  line += text;
  line += "\";";
}

std::string fileText(FieldKind kind, const Value& value) {
  if (value.isNull()) return {};
  switch (kind) {
  case FieldKind::Boolean:
    if (const auto truth = value.truth()) return fileText(*truth);
    break;
  case FieldKind::Int16:
  case FieldKind::Int32:
  case FieldKind::Double:
    if (const auto number = value.number()) return germanNumber(*number);
    break;
  case FieldKind::Text:
  case FieldKind::Date:
    break;
  }
  return value.text();
}

} // namespace qx
