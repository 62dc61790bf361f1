#include "samples/json_lines.h"

namespace qx::bench {

// The made-up values hold no character that JSON would have to escape.
void writeJsonLine(std::ostream& out, std::string_view type, const SampleJob& job) {
  out << R"({"type":")" << type << '"';
  for (const SampleField& field : job) {
    if (field.value.empty()) continue;
    out << ",\"" << field.property << "\":";
    if (field.number)
      out << field.value;
    else
      out << '"' << field.value << '"';
  }
  out << "}\n";
}

} // namespace qx::bench
