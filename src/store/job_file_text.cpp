#include "store/job_file_text.h"

#include "model/code_page.h"
#include "store/job_file_line.h"

namespace qx {
namespace {

/// The text without characters that would be read back wrongly.
std::string readable(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text.substr(i).starts_with("\r\n")) {
      result += ' ';
      ++i;
    } else {
      result += text[i] == '"' ? '\'' : text[i] == ';' ? ',' : text[i];
    }
  }
  return result;
}

} // namespace

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

void JobFileLineWriter::add(FieldKind kind, const Value& value) {
  line_ += '"';
  const bool text = kind == FieldKind::Text || kind == FieldKind::Date;
  if (!text || value.kind() != ValueKind::Text) scratch_ = fileText(kind, value);
  std::string_view content = text && value.kind() == ValueKind::Text ? value.textView() : scratch_;
  if (!replacing_ && content.find_first_of("\";") != std::string_view::npos) unreadable_ = true;
  if (replacing_) content = scratch_ = readable(content);
  replaced_ += appendCodePage(line_, content);
  line_ += "\";";
}

std::string_view JobFileLineWriter::end() {
  line_ += "\r\n";
  if (line_.size() > longestRecord) unreadable_ = true;
  return line_;
}

void LostCharacters::note(std::string_view jobId, std::size_t characters) {
  if (characters == 0 || named_.contains(jobId)) return;
  if (named_.size() == mostNamed) {
    ++unnamedLines_;
    return;
  }
  named_.emplace(jobId);
  diagnostics_.report(
      {"Export", "characters that the job file's code page lacks were written as '?'", jobId});
}

void LostCharacters::finish() {
  if (unnamedLines_ == 0) return;
  const std::string text = "characters that the code page lacks were written as '?' in " +
                           std::to_string(unnamedLines_) + " further lines";
  diagnostics_.report({"Export", text, {}});
}

} // namespace qx
