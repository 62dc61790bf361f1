#include "store/json_writer.h"

#include "model/control_characters.h"
#include "model/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <ios>

namespace qx {
namespace {

/// The number of leading bytes that a JSON text holds as they are.
std::size_t lengthOfPlain(std::string_view content) {
  const auto escaped = [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte >= 0x7F || c == '"' || c == '\\';
  };
  return static_cast<std::size_t>(std::ranges::find_if(content, escaped) - content.begin());
}

} // namespace

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

JsonWriter& JsonWriter::columns(Recordset& row, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) key(row.fieldName(i)).value(row.value(i));
  return *this;
}

void JsonWriter::finish() { output_ << '\n' << std::flush; }

void JsonWriter::quote(std::string_view content) {
  output_ << '"';
  for (std::size_t at = 0; at < content.size();) {
    const std::size_t plain = lengthOfPlain(content.substr(at));
    output_.write(content.data() + at, static_cast<std::streamsize>(plain));
    at += plain;
    if (at < content.size()) at += escapeFirst(content.substr(at));
  }
  output_ << '"';
}

std::size_t JsonWriter::escapeFirst(std::string_view content) {
  constexpr std::string_view digits = "0123456789abcdef";
  const auto byte = static_cast<unsigned char>(content.front());
  const auto lowByte = [&](unsigned control) { output_ << digits[control >> 4U] << digits[control & 0xFU]; };
  if (byte >= 0x80) {
    const std::size_t length = utf8Length(content);
    const std::string_view character = content.substr(0, length);
    if (isControl(character)) {
      const auto last = static_cast<unsigned char>(character.back());
      output_ << (length == 2 ? "\\u00" : "\\u20");
      lowByte(length == 2 ? last : (static_cast<unsigned char>(character[1]) & 3U) << 6U | (last & 0x3FU));
    } else
      output_ << (length == 0 ? std::string_view("\xEF\xBF\xBD") : character);
    return length == 0 ? 1 : length;
  }
  if (byte == '"' || byte == '\\')
    output_ << '\\' << content.front();
  else if (byte == '\n')
    output_ << "\\n";
  else if (byte == '\r')
    output_ << "\\r";
  else if (byte == '\t')
    output_ << "\\t";
  else {
    output_ << "\\u00";
    lowByte(byte);
  }
  return 1;
}

} // namespace qx
