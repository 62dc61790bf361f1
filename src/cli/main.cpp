// The program: arguments to command, exceptions to exit status.
#include "adapters/system/console_desktop.h"
#include "adapters/system/pager.h"
#include "adapters/system/program_entry.h"
#include "adapters/system/stream_diagnostics.h"
#include "adapters/system/user.h"
#include "cli/command_line.h"
#include "cli/harmless_buffer.h"
#include "cli/json_members.h"
#include "cli/out_of_memory.h"
#include "composition/composition.h"
#include "model/text.h"
#include "platform/terminal.h"
#include "program/version.h"
#include "store/json_writer.h"

#include <exception>
#include <iostream>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qx::cli {
namespace {

// Before all other variables, which may need memory too.
[[gnu::init_priority(101)]] const OutOfMemoryGuard outOfMemoryGuard;

void reportAsJson(std::ostream& result, const ProgramError& error) {
  JsonWriter json(result);
  json.beginObject().key("error").text(error.what());
  json.key("file").textOrNull(error.location().file);
  json.key("line");
  if (error.location().line == 0)
    json.null();
  else
    json.number(error.location().line);
  json.key("field").textOrNull(error.location().field);
  if (!error.faults().empty()) {
    json.key("faults").beginArray();
    for (const InputFault& fault : error.faults()) writeFault(json, fault);
    json.endArray();
  }
  json.endObject().finish();
}

void printError(HarmlessStream& messages, const ProgramError& error) {
  messages.setPriority(Priority::Error);
  const SourceLocation& location = error.location();
  messages << "qximportjob: ";
  if (location.line != 0) messages << oneLine(location.file) << ", line " << location.line << ": ";
  messages << oneLine(error.what()) << '\n';
  const std::vector<InputFault>& faults = error.faults();
  for (std::size_t i = 1; i < faults.size(); ++i)
    messages << "  line " << faults[i].line << ": " << oneLine(sentenceOf(faults[i])) << '\n';
  if (faults.size() > 1)
    messages << faults.size() << " faults in " << faultyObjects(faults)
             << (faultyObjects(faults) == 1 ? " object.\n" : " objects.\n");
  if (!error.nextStep().empty()) messages << error.nextStep() << '\n';
}

bool wantsColors(std::string_view choice) {
  if (choice != "auto") return choice == "always";
  return isOutputTerminal() && environmentVariable("NO_COLOR").value_or("").empty();
}

/// Null unless the result goes to a terminal.
std::optional<std::size_t> columnsOfResult() {
  constexpr std::size_t usual = 80;
  if (!isOutputTerminal()) return std::nullopt;
  return terminalColumns(standardOutput).value_or(usual);
}

/// The user's pager in front of the terminal, as long as the object lives.
class Paging {
public:
  Paging(HarmlessStream& result, bool wanted)
      : result_(result), pager_(wanted && isOutputTerminal() ? openPager() : nullptr) {
    if (pager_) result_.buffer().setTarget(pager_->rdbuf());
  }
  Paging(const Paging&) = delete;
  Paging& operator=(const Paging&) = delete;
  ~Paging() {
    if (!pager_) return;
    result_.flush();
    result_.buffer().setTarget(std::cout.rdbuf());
  }

private:
  HarmlessStream& result_;
  std::unique_ptr<std::ostream> pager_;
};

void requireWritten(std::ostream& result) {
  if (!result.flush()) throw ProgramError(ExitCode::Failure, "standard output could not be written");
}

ExitCode execute(int count, const char* const* arguments, HarmlessStream& result, HarmlessStream& messages) {
  const Invocation invocation = parseArguments(count, arguments, versionText);
  if (!invocation.command) {
    const Paging paging(result, true);
    result << invocation.text;
    requireWritten(result);
    return ExitCode::Success;
  }
  invocation.command->prepare();
  StreamDiagnostics diagnostics(messages, invocation.options.verbose);
  ConsoleDesktop desktop(messages, diagnostics);
  AbsentJobView jobView(desktop);
  ProgramOptions options = invocation.options;
  options.program = "qximportjob " + std::string(versionNumber);
  Composition composition(std::move(options), diagnostics, desktop, jobView);
  if (wantsColors(invocation.color)) result.useColors();
  if (isSystemLog(standardOutput) && !invocation.options.json) result.markPriorities(Priority::Information);
  const Paging paging(result, invocation.command->isForReading());
  std::ostream& data = isOutputTerminal() ? static_cast<std::ostream&>(result) : std::cout;
  const Output output{
      result, messages, std::cerr, data, invocation.options.json, invocation.jsonLines, columnsOfResult()};
  const ExitCode code = invocation.command->run(composition, output);
  requireWritten(result);
  return code;
}

ExitCode guarded(int count, const char* const* arguments) {
  HarmlessStream result(std::cout);
  HarmlessStream messages(std::cerr);
  if (isSystemLog(standardError)) messages.markPriorities(Priority::Warning);
  const auto end = [&](const ProgramError& error) {
    // A begun document cannot become an error document.
    if (asksForJson(count, arguments) && !result.used())
      reportAsJson(result, error);
    else
      printError(messages, error);
  };
  return exitCodeOf([&] { return execute(count, arguments, result, messages); }, end);
}

} // namespace
} // namespace qx::cli

int main(int count, char** arguments) {
  try {
    std::ios::sync_with_stdio(false);
    return qx::withUtf8(count, arguments, [](int words, char** texts) {
      return static_cast<int>(qx::cli::guarded(words, texts));
    });
  } catch (const std::bad_alloc&) {
    return qx::cli::endOutOfMemory();
  }
}
