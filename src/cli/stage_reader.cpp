#include "cli/stage_reader.h"

#include "program/program_error.h"

#include <nlohmann/json.hpp>

#include <limits>
#include <string>
#include <utility>

namespace qx::cli {
namespace {

using Json = nlohmann::json;

/// Follows the parser's events through the levels of a file of jobs.
class StageEvents final : public nlohmann::json_sax<Json> {
public:
  StageEvents(TextSource& source, JobAssembler& assembler) : source_(source), assembler_(assembler) {}

  bool null() override { return take({}); }
  bool boolean(bool truth) override { return take(truth); }
  bool number_integer(number_integer_t number) override { return take(std::int64_t{number}); }
  bool number_unsigned(number_unsigned_t number) override {
    if (number > static_cast<number_unsigned_t>(std::numeric_limits<std::int64_t>::max()))
      return take(static_cast<double>(number));
    return take(static_cast<std::int64_t>(number));
  }
  bool number_float(number_float_t number, const string_t& /*text*/) override { return take(double{number}); }
  bool string(string_t& text) override { return take(std::move(text)); }
  bool binary(binary_t& /*bytes*/) override { return take({}); }

  bool start_object(std::size_t /*size*/) override {
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

  bool key(string_t& name) override {
    name_ = std::move(name);
    line_ = source_.line();
    return true;
  }

  bool end_object() override {
    if (level_ == Level::Position) {
      assembler_.endPosition();
      level_ = Level::Positions;
    } else {
      assembler_.endJob();
      level_ = inArray_ ? Level::Jobs : Level::File;
    }
    return true;
  }

  bool start_array(std::size_t /*size*/) override {
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

  bool end_array() override {
    level_ = level_ == Level::Positions ? Level::Job : Level::File;
    return true;
  }

  bool parse_error(std::size_t /*position*/, const std::string& /*lastToken*/,
                   const Json::exception& error) override {
    std::string reason = error.what();
    if (reason.starts_with('[')) reason.erase(0, reason.find(' ') + 1);
    // The library counts its position from the beginning of the object.
    if (const auto colon = reason.find(": "); colon != std::string::npos) reason.erase(0, colon + 2);
    const bool cut = reason.find("unexpected end of input") != std::string::npos ||
                     reason.find("missing closing quote") != std::string::npos;
    if (cut && source_.atEnd()) reason = "it ends in the middle";
    throw ProgramError(ExitCode::BadInput, "the file is not valid JSON: " + reason,
                       "Nothing was staged. Correct the file and stage it again.",
                       {source_.name(), source_.line(), {}});
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

[[noreturn]] void refuseRest(const TextSource& source, std::string_view reason) {
  throw ProgramError(ExitCode::BadInput, std::string(reason),
                     "A file holds an array of objects, one object, or one object per line.",
                     {source.name(), source.line(), {}});
}

} // namespace

void readJobs(TextSource& source, JobAssembler& assembler) {
  StageEvents events(source, assembler);
  source.skipBlanks();
  if (source.atEnd()) refuseRest(source, "the file is empty");
  do {
    Json::sax_parse(TextIterator(source), TextIterator(), &events, nlohmann::detail::input_format_t::json,
                    false);
    source.skipBlanks();
    if (events.arraySeen() && !source.atEnd()) refuseRest(source, "something follows the array");
  } while (!source.atEnd());
}

} // namespace qx::cli
