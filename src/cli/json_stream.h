// A text source as the parser of JSON reads it.
#pragma once

#include "cli/text_source.h"

#include <cstddef>

namespace qx::cli {

class JsonStream {
public:
  using Ch = char;

  explicit JsonStream(TextSource& source) : source_(source) {}

  Ch Peek() const { return source_.atEnd() ? '\0' : source_.current(); }
  Ch Take() {
    const Ch taken = Peek();
    if (!source_.atEnd()) source_.advance();
    return taken;
  }
  /// The parser's own places of errors are not used; the source knows its lines.
  static std::size_t Tell() { return 0; }
  // Asked of streams that are changed in place only.
  static Ch* PutBegin() { return nullptr; }
  static void Put(Ch /*character*/) {}
  static std::size_t PutEnd(Ch* /*begin*/) { return 0; }

private:
  TextSource& source_;
};

} // namespace qx::cli
