#include "cli/json_writer.h"

#include "model/text.h"

#include <array>
#include <charconv>
#include <cmath>

namespace qx::cli {

JsonWriter& JsonWriter::open(char bracket) {
  separate();
  output_ << bracket;
  hasElements_.push_back(false);
  return *this;
}

JsonWriter& JsonWriter::close(char bracket) {
  hasElements_.pop_back();
  output_ << bracket;
  return *this;
}

void JsonWriter::separate() {
  if (!afterKey_ && !hasElements_.empty()) {
    if (hasElements_.back()) output_ << ',';
    hasElements_.back() = true;
  }
  afterKey_ = false;
}

JsonWriter& JsonWriter::key(std::string_view name) {
  separate();
  quote(name);
  output_ << ':';
  afterKey_ = true;
  return *this;
}

JsonWriter& JsonWriter::text(std::string_view content) {
  separate();
  quote(content);
  return *this;
}

JsonWriter& JsonWriter::number(std::int64_t whole) {
  separate();
  output_ << whole;
  return *this;
}

JsonWriter& JsonWriter::number(double content) {
  if (!std::isfinite(content)) return null();
  separate();
  std::array<char, 32> buffer{};
  const auto* const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), content).ptr;
  output_.write(buffer.data(), end - buffer.data());
  return *this;
}

JsonWriter& JsonWriter::boolean(bool truth) {
  separate();
  output_ << (truth ? "true" : "false");
  return *this;
}

JsonWriter& JsonWriter::null() {
  separate();
  output_ << "null";
  return *this;
}

JsonWriter& JsonWriter::value(const Value& column) {
  switch (column.kind()) {
  case ValueKind::Null:
    return null();
  case ValueKind::Integer:
    return number(column.integer().value_or(0));
  case ValueKind::Boolean:
    return boolean(column.truth().value_or(false));
  case ValueKind::Double:
  case ValueKind::Currency:
    return number(column.number().value_or(0));
  case ValueKind::Text:
    return text(column.textView());
  case ValueKind::TimeStamp:
    break;
  }
  return text(column.text());
}

void JsonWriter::finish() { output_ << '\n' << std::flush; }

void JsonWriter::quote(std::string_view content) {
  constexpr std::string_view digits = "0123456789abcdef";
  output_ << '"';
  for (std::size_t at = 0; at < content.size();) {
    const auto byte = static_cast<unsigned char>(content[at]);
    if (byte >= 0x80) {
      const std::size_t length = utf8Length(content.substr(at));
      const std::string_view character = content.substr(at, length);
      if (length == 2 && character < "\u00A0")
        output_ << "\\u00" << digits[static_cast<unsigned char>(content[at + 1]) >> 4U]
                << digits[static_cast<unsigned char>(content[at + 1]) & 0xFU];
      else
        output_ << (length == 0 ? std::string_view("\xEF\xBF\xBD") : character);
      at += length == 0 ? 1 : length;
      continue;
    }
    if (byte == '"' || byte == '\\')
      output_ << '\\' << content[at];
    else if (byte == '\n')
      output_ << "\\n";
    else if (byte == '\r')
      output_ << "\\r";
    else if (byte == '\t')
      output_ << "\\t";
    else if (byte < 0x20 || byte == 0x7F)
      output_ << "\\u00" << digits[byte >> 4U] << digits[byte & 0xFU];
    else
      output_ << content[at];
    ++at;
  }
  output_ << '"';
}

} // namespace qx::cli
