#include "cli/object_texts.h"

#include "cli/json_stream.h"

#include <rapidjson/reader.h>

namespace qx::cli {
namespace {

/// Keeps the characters of the current object when it is wanted.
class CopyingStream {
public:
  using Ch = char;

  explicit CopyingStream(TextSource& source) : stream_(source) {}

  Ch Peek() const { return stream_.Peek(); }
  Ch Take() {
    const Ch taken = stream_.Take();
    if (copying_) text_ += taken;
    return taken;
  }
  static std::size_t Tell() { return 0; }
  static Ch* PutBegin() { return nullptr; }
  static void Put(Ch /*character*/) {}
  static std::size_t PutEnd(Ch* /*begin*/) { return 0; }

  /// The bracket has been taken already.
  void begin() {
    text_ = "{";
    copying_ = true;
  }
  void end() { copying_ = false; }
  bool copying() const { return copying_; }
  const std::string& text() const { return text_; }

private:
  JsonStream stream_;
  std::string text_;
  bool copying_ = false;
};

/// Counts the outermost objects.
class ObjectEvents final : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, ObjectEvents> {
public:
  using Wanted = std::function<bool(std::int64_t number)>;
  using Visit = std::function<void(std::int64_t number, const std::string& text)>;

  ObjectEvents(CopyingStream& stream, const Wanted& wanted, const Visit& visit)
      : stream_(stream), wanted_(wanted), visit_(visit) {}

  bool StartObject() {
    if (depth_++ == 0 && wanted_(++number_)) stream_.begin();
    return true;
  }
  bool EndObject(rapidjson::SizeType /*count*/) {
    if (--depth_ == 0 && stream_.copying()) {
      stream_.end();
      visit_(number_, stream_.text());
    }
    return true;
  }

private:
  CopyingStream& stream_;
  const Wanted& wanted_;
  const Visit& visit_;
  std::int64_t number_ = 0;
  int depth_ = 0;
};

} // namespace

void forEachObjectText(TextSource& source, const std::function<bool(std::int64_t number)>& wanted,
                       const std::function<void(std::int64_t number, const std::string& text)>& visit) {
  CopyingStream stream(source);
  ObjectEvents events(stream, wanted, visit);
  rapidjson::Reader reader;
  for (source.skipBlanks(); !source.atEnd(); source.skipBlanks())
    if (reader
            .Parse<rapidjson::kParseStopWhenDoneFlag | rapidjson::kParseNumbersAsStringsFlag>(stream, events)
            .IsError())
      return;
}

} // namespace qx::cli
