// The text forms of values in job files, and the composing of their lines.
#pragma once

#include "model/field_table.h"
#include "model/german_text.h"
#include "platform/system.h"
#include "platform/value.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>

namespace qx {

/// Adds a field to a line: the text between double quotes and a semicolon. Nothing is escaped, on purpose:
/// the format has no escapes.
void appendFileField(std::string& line, std::string_view text);

inline std::string fileText(const std::string& text) { return text; }
inline std::string fileText(std::int16_t number) { return std::to_string(number); }
inline std::string fileText(std::int32_t number) { return std::to_string(number); }
inline std::string fileText(double number) { return germanNumber(number); }
inline std::string fileText(bool truth) { return std::string(germanBoolean(truth)); }

/// The text of a property of a record.
template <class Record>
std::string fileText(const Field<Record>& field, const Record& record) {
  return field.visit(record, [](const auto& property) { return fileText(property); });
}

/// The text of a column's value. The kind of the field decides, not how the database stores it: 1 reads
/// "Wahr" in a boolean field. Null is the empty text; a value that does not fit the kind is returned as it
/// is.
std::string fileText(FieldKind kind, const Value& value);

namespace detail {

template <class Number>
std::optional<Number> numberFromFile(std::string_view text) {
  const auto number = parseGermanNumber(text);
  if constexpr (std::is_same_v<Number, double>) {
    return number;
  } else {
    if (!number || *number < std::numeric_limits<Number>::min() ||
        *number > std::numeric_limits<Number>::max())
      return std::nullopt;
    const auto whole = static_cast<Number>(*number);
    return whole == *number ? std::optional<Number>(whole) : std::nullopt;
  }
}

} // namespace detail

/// Reads a text of a job file into a property. An empty text leaves a number or truth value as it was. False,
/// without a change, when the text does not fit the property.
template <class Property>
bool readFileText(std::string_view text, Property& property) {
  if constexpr (std::is_same_v<Property, std::string>) {
    property = text;
    return true;
  } else {
    if (text.empty()) return true;
    std::optional<Property> read;
    if constexpr (std::is_same_v<Property, bool>) {
      read = parseGermanBoolean(text);
    } else {
      read = detail::numberFromFile<Property>(text);
    }
    if (read) property = *read;
    return read.has_value();
  }
}

/// The same for a property of a record.
template <class Record>
bool readFileText(std::string_view text, const Field<Record>& field, Record& record) {
  return field.visit(record, [text](auto& property) { return readFileText(text, property); });
}

/// Builds one line at a time, in code page 1252. Values are written as they are; with `replacing`, characters
/// that the format cannot carry in a value are replaced first, as version 1 does.
class JobFileLineWriter {
public:
  explicit JobFileLineWriter(bool replacing) : replacing_(replacing) {}

  void begin() {
    line_.clear();
    replaced_ = 0;
    unreadable_ = false;
  }
  void add(FieldKind kind, const Value& value);
  /// The finished line with its end, valid until the next `begin`.
  std::string_view end();
  /// The number of characters of the line that the code page lacks.
  std::size_t replaced() const { return replaced_; }

  /// Whether a value of the finished line holds a character that an import takes for syntax, or the line is
  /// longer than an import reads.
  bool unreadable() const { return unreadable_; }

private:
  bool replacing_;
  std::string line_;
  std::string scratch_;
  std::size_t replaced_ = 0;
  bool unreadable_ = false;
};

/// Reports each job with characters that the code page lacks to the diagnostics once; of very many jobs the
/// first ones by key and the number of the others.
class LostCharacters {
public:
  explicit LostCharacters(Diagnostics& diagnostics) : diagnostics_(diagnostics) {}

  void note(std::string_view jobId, std::size_t characters);
  /// To be called after the last line.
  void finish();

private:
  static constexpr std::size_t mostNamed = 1000;

  Diagnostics& diagnostics_;
  std::set<std::string, std::less<>> named_;
  std::int64_t unnamedLines_ = 0;
};

} // namespace qx
