// The rows of a file of separated values.
#pragma once

#include "platform/files.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx::convert {

enum class Encoding : std::uint8_t { Utf8, Windows1252 };

struct CsvForm {
  char delimiter = ';';
  char quote = '"'; ///< NUL for none
  Encoding encoding = Encoding::Utf8;
};

/// One value as it stands in the file, without its quotes.
struct CsvValue {
  std::string bytes;
  std::int64_t line = 0; ///< on which it begins
};

/// Reads row after row; lines without any character are passed over. Memory does not grow with the file.
/// Raises `ProgramError`, which names line and column, for anything that does not have the form, and
/// `std::system_error` when the file cannot be read.
class CsvRows {
public:
  /// `name` is for messages. The file must outlive the object.
  CsvRows(File& file, const CsvForm& form, std::string name);
  CsvRows(const CsvRows&) = delete;
  CsvRows& operator=(const CsvRows&) = delete;
  ~CsvRows();

  /// Reads the next row; false at the end of the file.
  bool next();
  /// The values of the row that was read last.
  const std::vector<CsvValue>& values() const { return values_; }
  /// The line on which it begins.
  std::int64_t line() const { return values_.empty() ? line_ : values_.front().line; }

  /// The value as UTF-8 text without outer blanks. `column` is for messages.
  std::string textOf(const CsvValue& value, std::string_view column) const;

  [[noreturn]] void refuse(std::int64_t line, std::string_view column, const std::string& reason) const;

private:
  struct Parser;

  void skipMark();
  bool fill();
  void feedPiece();
  void feed(std::string_view piece);
  void finish();
  std::string nextColumn() const;
  void add(std::string_view bytes);

  File& file_;
  CsvForm form_;
  std::string name_;
  std::unique_ptr<Parser> parser_;
  std::vector<char> buffer_;
  std::string_view unread_;
  std::vector<CsvValue> values_;
  std::size_t count_ = 0; ///< of the values read of the current row
  std::int64_t line_ = 1; ///< of the piece that is read
  bool rowEnded_ = false;
  bool afterReturn_ = false; ///< the last piece ended with a carriage return
  bool atEnd_ = false;
};

} // namespace qx::convert
