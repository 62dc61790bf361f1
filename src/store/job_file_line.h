// The physical lines of a job file.
#pragma once

#include "rules/scrambler.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// The longest record that is read, line breaks included.
inline constexpr std::size_t longestRecord = std::size_t{16} * 1024 * 1024;

enum class LineEnd : std::uint8_t { Lf, CrLf, Cr };

/// A lone CR ends the first line when no more characters than a banner's precede it; further on it belongs to
/// a value.
inline constexpr std::size_t longestBannerLine = 32;

struct PhysicalLine {
  std::string_view text;   ///< without its end; bytes of the code page, unscrambled
  std::int64_t number = 0; ///< the banner has 1
  bool overlong = false;   ///< longer than `longestRecord`: only its beginning is returned
};

/// Reads a file line by line, whatever its size. The end of the banner decides how lines end: with CR LF a
/// lone CR or LF belongs to the value, with LF every LF ends a line (a CR before it included), with CR every
/// CR does. Raises `std::system_error` when reading fails.
class JobFileLines {
public:
  /// The stream must outlive the reader; `name` is for messages. `readAhead` is the number of bytes read at a
  /// time; it must exceed the longest banner line.
  JobFileLines(std::istream& stream, std::string name, std::size_t readAhead = std::size_t{128} * 1024);

  /// Unscrambles the lines read from now on; null for plain lines. Must outlive the reader.
  void unscramble(const Scrambler* scrambler) { scrambler_ = scrambler; }
  /// The next line, valid until the next call; null at the end of the file.
  std::optional<PhysicalLine> next();
  std::uintmax_t bytesRead() const { return bytesRead_; }

private:
  std::optional<std::size_t> findEnd(std::size_t from) const;
  void decideLineEnd();
  bool fill();
  void skipRest();
  PhysicalLine take(std::size_t end, std::size_t after);

  std::istream& stream_;
  std::string name_;
  std::size_t readAhead_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0; ///< of the unconsumed bytes
  std::size_t end_ = 0;
  std::uintmax_t bytesRead_ = 0;
  std::int64_t number_ = 0;
  LineEnd lineEnd_ = LineEnd::Lf;
  bool atEnd_ = false;
  bool skipping_ = false; ///< the rest of an overlong line is still to be skipped
  const Scrambler* scrambler_ = nullptr;
};

/// Why this cannot be read as a job file: missing, a directory, a device; "" when it is a plain file.
std::string whyNoJobFile(const std::filesystem::path& file);

/// Opens a file for `JobFileLines`. Raises `std::system_error`, also for a directory.
std::ifstream openJobFile(const std::filesystem::path& file);

} // namespace qx
