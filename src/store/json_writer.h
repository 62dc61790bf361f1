// Writes one JSON document as a stream.
#pragma once

#include "platform/database.h"

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// Members appear in the order in which they are written. Malformed UTF-8 becomes U+FFFD and a number that
/// JSON cannot express becomes null, so that the document is always valid.
class JsonWriter {
public:
  explicit JsonWriter(std::ostream& output) : output_(output) {}

  JsonWriter& beginObject() { return open('{'); }
  JsonWriter& endObject() { return close('}'); }
  JsonWriter& beginArray() { return open('['); }
  JsonWriter& endArray() { return close(']'); }
  JsonWriter& key(std::string_view name);

  JsonWriter& text(std::string_view content);
  JsonWriter& number(std::int64_t whole);
  JsonWriter& number(double content);
  JsonWriter& boolean(bool truth);
  JsonWriter& null();
  /// Null for an empty text.
  JsonWriter& textOrNull(std::string_view content) { return content.empty() ? null() : text(content); }
  /// An array of texts.
  template <class Texts>
  JsonWriter& texts(const Texts& contents) {
    beginArray();
    for (const std::string& content : contents) text(content);
    return endArray();
  }
  /// A column's value with its own type.
  JsonWriter& value(const Value& column);
  /// The first columns of a row as members.
  JsonWriter& columns(Recordset& row, std::size_t count);

  /// Ends the line that holds the document.
  void finish();

private:
  JsonWriter& open(char bracket);
  JsonWriter& close(char bracket);
  /// The comma before an element, unless it is the first one or follows its key.
  void separate();
  void quote(std::string_view content);
  /// Writes the first character of a text with an escape, as far as it needs one. Returns its length in
  /// bytes.
  std::size_t escapeFirst(std::string_view content);

  std::ostream& output_;
  std::vector<bool> hasElements_;
  bool afterKey_ = false;
};

} // namespace qx
