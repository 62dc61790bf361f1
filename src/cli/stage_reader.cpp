#include "cli/stage_reader.h"

#include "program/program_error.h"

#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

#include <charconv>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace qx::cli {
namespace {

/// The source as the parser reads it.
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

/// What is wrong, where the library's own words leave open what to do.
std::string reasonOf(rapidjson::ParseErrorCode code) {
  switch (code) {
  case rapidjson::kParseErrorValueInvalid:
    return "a value is expected";
  case rapidjson::kParseErrorObjectMissName:
    return "a name in double quotes is expected";
  case rapidjson::kParseErrorObjectMissColon:
    return "a colon is expected after the name";
  case rapidjson::kParseErrorObjectMissCommaOrCurlyBracket:
    return "a comma or } is expected after the value";
  case rapidjson::kParseErrorArrayMissCommaOrSquareBracket:
    return "a comma or ] is expected after the value";
  case rapidjson::kParseErrorStringInvalidEncoding:
    return "a text holds bytes that are not UTF-8";
  case rapidjson::kParseErrorStringEscapeInvalid:
    return "a text holds an unknown escape";
  default:
    return rapidjson::GetParseError_En(code);
  }
}

/// Follows the parser's events through the levels of a file of jobs.
class StageEvents final : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, StageEvents> {
public:
  StageEvents(TextSource& source, JobAssembler& assembler) : source_(source), assembler_(assembler) {}

  bool Null() { return take({}); }
  bool Bool(bool truth) { return take(truth); }
  bool String(const char* text, rapidjson::SizeType length, bool /*copied*/) {
    requireCharacters({text, length});
    return take(std::string(text, length));
  }

  /// Whole numbers stay whole as far as they can be held.
  bool RawNumber(const char* text, rapidjson::SizeType length, bool /*copied*/) {
    const std::string_view number(text, length);
    const char* const end = text + length;
    std::int64_t whole = 0;
    if (const auto [stopped, error] = std::from_chars(text, end, whole);
        error == std::errc() && stopped == end)
      return take(whole);
    double real = 0;
    const auto result = std::from_chars(text, end, real);
    const bool tiny =
        number.find("e-") != std::string_view::npos || number.find("E-") != std::string_view::npos;
    if (result.ec == std::errc::result_out_of_range && !tiny)
      refuseText("the number " + std::string(number) + " is too large", source_.line());
    return take(real);
  }

  bool StartObject() {
    switch (level_) {
    case Level::File:
    case Level::Jobs:
      assembler_.beginJob(source_.line());
      inArray_ = level_ == Level::Jobs;
      level_ = Level::Job;
      return true;
    case Level::Positions:
      assembler_.beginPosition(source_.line());
      level_ = Level::Position;
      return true;
    default:
      refuseValue("an object");
    }
  }

  bool Key(const char* name, rapidjson::SizeType length, bool /*copied*/) {
    requireCharacters({name, length});
    name_.assign(name, length);
    line_ = source_.line();
    return true;
  }

  bool EndObject(rapidjson::SizeType /*count*/) {
    if (level_ == Level::Position) {
      assembler_.endPosition();
      level_ = Level::Positions;
    } else {
      assembler_.endJob();
      level_ = inArray_ ? Level::Jobs : Level::File;
    }
    return true;
  }

  bool StartArray() {
    if (level_ == Level::File && !arraySeen_) {
      arraySeen_ = true;
      level_ = Level::Jobs;
    } else if (level_ == Level::Job && name_ == "Positionen") {
      assembler_.beginPositions({name_, line_, {}});
      level_ = Level::Positions;
    } else {
      refuseValue("an array");
    }
    return true;
  }

  bool EndArray(rapidjson::SizeType /*count*/) {
    level_ = level_ == Level::Positions ? Level::Job : Level::File;
    return true;
  }

  /// The library takes a second half of a surrogate pair alone, which is no character.
  void requireCharacters(std::string_view text) {
    constexpr char lead = '\xED';
    constexpr unsigned char firstHalf = 0xA0;
    for (auto at = text.find(lead); at != std::string_view::npos; at = text.find(lead, at + 1))
      if (static_cast<unsigned char>(text[at + 1]) >= firstHalf)
        refuseText("a text holds half of a surrogate pair", source_.line());
  }

  [[noreturn]] void refuseText(const std::string& reason, std::int64_t line) {
    throw ProgramError(ExitCode::BadInput, "the file is not valid JSON: " + reason,
                       "Nothing was staged. Correct the file and stage it again.",
                       {source_.name(), line, {}});
  }

  /// A text is at fault where it was read, everything else at the next character.
  [[noreturn]] void refuse(rapidjson::ParseErrorCode code) {
    if (source_.atEnd()) refuseText("it ends in the middle", source_.nextLine());
    const bool inText = code == rapidjson::kParseErrorStringInvalidEncoding ||
                        code == rapidjson::kParseErrorStringEscapeInvalid;
    if (!inText) refuseText(reasonOf(code), source_.nextLine());
    constexpr unsigned char firstPrintable = 0x20;
    const char next = source_.current();
    if (next == '\n' || next == '\r')
      refuseText("a text holds a line break, which is written \\n", source_.line());
    if (static_cast<unsigned char>(next) < firstPrintable)
      refuseText("a text holds a control character", source_.line());
    refuseText(reasonOf(code), source_.line());
  }

  bool arraySeen() const { return arraySeen_; }

private:
  enum class Level { File, Jobs, Job, Positions, Position };

  bool take(StageValue value) {
    switch (level_) {
    case Level::Job:
      assembler_.property({std::move(name_), line_, std::move(value)});
      return true;
    case Level::Position:
      assembler_.positionProperty({std::move(name_), line_, std::move(value)});
      return true;
    default:
      refuseValue(describe(value));
    }
  }

  [[noreturn]] void refuseValue(std::string_view what) {
    switch (level_) {
    case Level::Job:
      assembler_.refuse(line_, name_, std::string(what) + " is not expected here");
    case Level::Position:
      assembler_.refusePosition(line_, name_, std::string(what) + " is not expected here");
    case Level::Positions:
      assembler_.refuse(source_.line(), "Positionen",
                        "objects are expected in the array, not " + std::string(what));
    default:
      throw ProgramError(ExitCode::BadInput, "an object is expected, not " + std::string(what),
                         "A file holds an array of objects, one object, or one object per line.",
                         {source_.name(), source_.line(), {}});
    }
  }

  TextSource& source_;
  JobAssembler& assembler_;
  Level level_ = Level::File;
  bool inArray_ = false;
  bool arraySeen_ = false;
  std::string name_;
  std::int64_t line_ = 0;
};

[[noreturn]] void refuseRest(TextSource& source, std::string_view reason) {
  throw ProgramError(ExitCode::BadInput, std::string(reason),
                     "A file holds an array of objects, one object, or one object per line.",
                     {source.name(), source.line(), {}});
}

} // namespace

void readJobs(TextSource& source, JobAssembler& assembler) {
  constexpr unsigned flags = rapidjson::kParseValidateEncodingFlag | rapidjson::kParseNumbersAsStringsFlag |
                             rapidjson::kParseStopWhenDoneFlag;
  StageEvents events(source, assembler);
  JsonStream stream(source);
  rapidjson::Reader reader;
  source.skipBlanks();
  if (source.atEnd()) refuseRest(source, "the file is empty");
  do {
    const rapidjson::ParseResult result = reader.Parse<flags>(stream, events);
    if (result.IsError()) events.refuse(result.Code());
    source.skipBlanks();
    if (events.arraySeen() && !source.atEnd()) refuseRest(source, "something follows the array");
  } while (!source.atEnd());
}

} // namespace qx::cli
