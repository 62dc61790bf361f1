#include "cli/stage_reader.h"

#include "cli/json_stream.h"
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

constexpr const char* formOfFile = "A file holds an array of objects, one object, or one object per line.";

/// Refuses what is wrong with the file as a whole.
[[noreturn]] void refuseFile(const TextSource& source, std::int64_t line, FaultKind kind, std::string reason,
                             const char* nextStep) {
  throw ProgramError(ExitCode::BadInput, reason, nextStep, {source.name(), line, {}})
      .with({{line, 0, {}, codeOf(kind), reason, {}}});
}

/// Follows the parser's events through the levels of a file of jobs.
class StageEvents final : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, StageEvents> {
public:
  StageEvents(TextSource& source, JobAssembler& assembler) : source_(source), assembler_(assembler) {}

  bool Null() { return depth_ > 0 || take({}); }
  bool Bool(bool truth) { return depth_ > 0 || take(truth); }
  bool String(const char* text, rapidjson::SizeType length, bool /*copied*/) {
    requireCharacters({text, length});
    if (depth_ > 0) return true;
    return take(std::string(text, length));
  }

  /// Whole numbers stay whole as far as they can be held.
  bool RawNumber(const char* text, rapidjson::SizeType length, bool /*copied*/) {
    if (depth_ > 0) return true;
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
    if (depth_ > 0) return deeper();
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
      unexpected("an object");
      return deeper();
    }
  }

  bool Key(const char* name, rapidjson::SizeType length, bool /*copied*/) {
    requireCharacters({name, length});
    if (depth_ > 0) return true;
    name_.assign(name, length);
    line_ = source_.line();
    return true;
  }

  bool EndObject(rapidjson::SizeType /*count*/) {
    if (depth_ > 0) return higher();
    if (level_ == Level::Position) {
      assembler_.endPosition();
      level_ = Level::Positions;
    } else {
      assembler_.endJob();
      level_ = inArray_ ? Level::Jobs : Level::File;
      return !assembler_.full();
    }
    return true;
  }

  bool StartArray() {
    if (depth_ > 0) return deeper();
    if (level_ == Level::File && !arraySeen_) {
      arraySeen_ = true;
      level_ = Level::Jobs;
    } else if (level_ == Level::Job && name_ == "Positionen") {
      assembler_.beginPositions({name_, line_, {}});
      level_ = Level::Positions;
    } else {
      unexpected("an array");
      return deeper();
    }
    return true;
  }

  bool EndArray(rapidjson::SizeType /*count*/) {
    if (depth_ > 0) return higher();
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
    refuseFile(source_, line, FaultKind::NotJson, "the file is not valid JSON: " + reason,
               "Nothing was staged. Correct the file and stage it again.");
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

  /// Nothing more has to be read.
  bool ended() const { return level_ == Level::File || level_ == Level::Jobs ? assembler_.full() : false; }
  bool arraySeen() const { return arraySeen_; }

private:
  enum class Level { File, Jobs, Job, Positions, Position };

  bool take(StageValue value) {
    switch (level_) {
    case Level::Job:
      if (name_ == rejectedProperty) return true;
      assembler_.property({std::move(name_), line_, std::move(value)});
      return true;
    case Level::Position:
      assembler_.positionProperty({std::move(name_), line_, std::move(value)});
      return true;
    default:
      unexpected(describe(value));
      return true;
    }
  }

  /// Everything below an unexpected value is passed over.
  bool deeper() {
    ++depth_;
    return true;
  }
  bool higher() {
    --depth_;
    return true;
  }

  void unexpected(std::string_view what) {
    switch (level_) {
    case Level::Job:
      if (name_ == rejectedProperty) return;
      return assembler_.fault(line_, name_,
                              {FaultKind::WrongKind, std::string(what) + " is not expected here", {}});
    case Level::Position:
      return assembler_.positionFault(
          line_, name_, {FaultKind::WrongKind, std::string(what) + " is not expected here", {}});
    case Level::Positions:
      return assembler_.fault(
          source_.line(), "Positionen",
          {FaultKind::WrongKind, "objects are expected in the array, not " + std::string(what), {}});
    default:
      refuseFile(source_, source_.line(), FaultKind::NotAnObject,
                 "an object is expected, not " + std::string(what), formOfFile);
    }
  }

  TextSource& source_;
  JobAssembler& assembler_;
  Level level_ = Level::File;
  int depth_ = 0; ///< below a value that was not expected
  bool inArray_ = false;
  bool arraySeen_ = false;
  std::string name_;
  std::int64_t line_ = 0;
};

} // namespace

void readJobs(TextSource& source, JobAssembler& assembler) {
  constexpr unsigned flags = rapidjson::kParseValidateEncodingFlag | rapidjson::kParseNumbersAsStringsFlag |
                             rapidjson::kParseStopWhenDoneFlag;
  StageEvents events(source, assembler);
  JsonStream stream(source);
  rapidjson::Reader reader;
  source.skipBlanks();
  if (source.atEnd()) refuseFile(source, source.line(), FaultKind::NotJson, "the file is empty", formOfFile);
  do {
    const rapidjson::ParseResult result = reader.Parse<flags>(stream, events);
    if (events.ended()) return;
    if (result.IsError()) events.refuse(result.Code());
    source.skipBlanks();
    if (events.arraySeen() && !source.atEnd())
      refuseFile(source, source.line(), FaultKind::NotJson, "something follows the array", formOfFile);
  } while (!source.atEnd());
}

} // namespace qx::cli
