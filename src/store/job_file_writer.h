// Composes the lines of a job file.
#pragma once

#include "model/field_table.h"
#include "platform/system.h"
#include "platform/value.h"

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>

namespace qx {

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
