#include "samples/json_lines.h"

namespace qx::bench {
namespace {

// The made-up values hold no character that JSON would have to escape.
void writeFields(std::ostream& out, const SampleJob& job, std::string_view separator) {
  for (const SampleField& field : job) {
    if (field.value.empty()) continue;
    out << separator << '"' << field.property << "\":";
    if (field.number)
      out << field.value;
    else
      out << '"' << field.value << '"';
    separator = ",";
  }
}

} // namespace

void writeJsonLine(std::ostream& out, std::string_view type, const SampleJob& job,
                   const std::vector<SampleJob>& positions) {
  out << R"({"type":")" << type << '"';
  writeFields(out, job, ",");
  std::string_view separator = R"(,"Positionen":[{)";
  for (const SampleJob& position : positions) {
    out << separator;
    writeFields(out, position, "");
    separator = "},{";
  }
  out << (positions.empty() ? "}\n" : "}]}\n");
}

} // namespace qx::bench
