#include "cli/commands.h"

#include "cli/close_words.h"
#include "cli/new_file.h"
#include "cli/settings_file.h"
#include "cli/terminal_text.h"
#include "cli/text_source.h"
#include "model/text.h"
#include "platform/conflict_retry.h"
#include "program/busy_notice.h"
#include "settings/option_terms.h"
#include "settings/settings.h"
#include "store/json_writer.h"

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace qx::cli {
namespace {

struct Entry {
  std::string_view section;
  std::string_view key;
  std::string setting;
  bool local;
};

void print(const Output& output, const Entry& entry) {
  if (!output.json) {
    output.result << entry.setting << '\n';
    return;
  }
  JsonWriter json(output.result);
  json.beginObject().key("section").text(entry.section).key("key").text(entry.key);
  json.key("value").text(entry.setting).key("local").boolean(entry.local).endObject().finish();
}

std::string closestKey(std::string_view section, std::string_view key) {
  std::vector<std::string> known;
  for (const OptionSpec* option : allOptions())
    known.push_back(std::string(option->section) + "' '" + std::string(option->key));
  return closestWord(std::string(section) + "' '" + std::string(key), known);
}

/// A host may have options of its own.
void requireKnown(std::string_view section, std::string_view key) {
  if (findOption(section, key) != nullptr) return;
  const std::string meant = closestKey(section, key);
  throw ProgramError(
      ExitCode::BadInput,
      "there is no option '" + std::string(section) + "' '" + std::string(key) + "'" +
          (meant.empty() ? "" : "; did you mean '" + meant + "'?"),
      "Nothing was changed. 'qximportjob settings list' shows the options; --force stores one that "
      "only another program knows.");
}

void noteOtherStore(const Output& output, std::string_view section, std::string_view key, bool local) {
  const OptionSpec* option = findOption(section, key);
  if (option != nullptr && local != option->isLocal())
    output.messages << "Note: this option is read from the " << (local ? "shared" : "local") << " store; "
                    << (local ? "leave --local out.\n" : "add --local.\n");
}

/// Returns the text as it is stored.
std::string acceptedValue(const OptionSpec& option, const std::string& text,
                          const SourceLocation& location = {}) {
  if (const auto wrong = refusalOf(option, text); !wrong.empty())
    throw ProgramError(ExitCode::BadInput, "'" + text + "': " + wrong, "Nothing was changed.", location);
  return storedForm(option, text);
}

/// A trigger of the database can silently drop it.
void saveAndCheck(const Settings& settings, std::string_view section, std::string_view key,
                  std::string_view text, bool local) {
  settings.save(applicationName, section, key, text, local);
  if (settings.get(applicationName, section, key, local) != text)
    throw ProgramError(ExitCode::Failure, "the database did not store the setting '" + std::string(section) +
                                              "' '" + std::string(key) + "'");
}

std::string joined(const std::vector<std::string_view>& words) {
  std::string text;
  for (const std::string_view word : words) text.append(text.empty() ? "" : ", ").append(word);
  return text;
}

struct ListedOption {
  const OptionSpec* option;
  std::string stored;
};

void writeListed(JsonWriter& json, const ListedOption& listed) {
  const OptionSpec& option = *listed.option;
  json.beginObject();
  json.key("section").text(option.section).key("key").text(option.key);
  json.key("value").text(listed.stored).key("local").boolean(option.isLocal());
  json.key("meaning").text(option.english);
  json.key("effective").text(effectiveValue(option, listed.stored));
  json.key("default").text(defaultOf(option));
  json.key("allowed").text(allowedValues(option));
  json.key("readers").beginArray();
  for (const std::string_view reader : readersOf(option)) json.text(reader);
  json.endArray().endObject();
}

void printListed(HarmlessStream& result, const ListedOption& listed) {
  const OptionSpec& option = *listed.option;
  const std::string effective = effectiveValue(option, listed.stored);
  result << "  ";
  result.print(option.key, listed.stored.empty() ? Style::Plain : Style::Good);
  result << " = " << oneLine(listed.stored);
  if (effective != listed.stored)
    result << (listed.stored.empty() ? "(" : "  (counts as ") << effective << ')';
  result << "\n    " << option.english << "\n    " << allowedValues(option);
  if (!option.fallback.empty() || option.isCheck()) result << "; default " << defaultOf(option);
  const auto readers = readersOf(option);
  result << (readers.empty() ? "; read by other programs only" : "; read by " + joined(readers));
  if (option.isLocal()) result << "; each user's own (--local)";
  if (option.customerSpecific) result << "; customer-specific mode only";
  result << '\n';
}

} // namespace

ExitCode SettingsListCommand::work(const CommandContext& context) {
  const Settings settings(context.environment, SettingTrap::Nothing);
  // Reads all before printing the first: half a list would look complete.
  std::vector<ListedOption> options;
  for (const OptionSpec* option : allOptions())
    options.push_back({option, settings.read(*option).value_or("")});
  if (context.output.json) {
    JsonWriter json(context.output.result);
    json.beginObject().key("settings").beginArray();
    for (const ListedOption& listed : options) writeListed(json, listed);
    json.endArray().endObject().finish();
    return ExitCode::Success;
  }
  std::string_view section;
  for (const ListedOption& listed : options) {
    if (listed.option->section != section)
      context.output.result << (section.empty() ? "" : "\n") << listed.option->section << '\n';
    section = listed.option->section;
    printListed(context.output.result, listed);
  }
  return ExitCode::Success;
}

void SettingsGetCommand::prepare() {
  section = composed(section);
  key = composed(key);
}

ExitCode SettingsGetCommand::work(const CommandContext& context) {
  const Settings settings(context.environment, SettingTrap::Nothing);
  print(context.output, {section, key, settings.get(applicationName, section, key, local), local});
  return ExitCode::Success;
}

void SettingsSetCommand::prepare() {
  section = composed(section);
  key = composed(key);
  if (!force) requireKnown(section, key);
  if (const OptionSpec* option = findOption(section, key)) value = acceptedValue(*option, value);
}

ExitCode SettingsSetCommand::work(const CommandContext& context) {
  const Settings settings(context.environment, SettingTrap::Nothing);
  noteOtherStore(context.output, section, key, local);
  saveAndCheck(settings, section, key, value, local);
  print(context.output, {section, key, value, local});
  return ExitCode::Success;
}

ExitCode SettingsExportCommand::work(const CommandContext& context) {
  const Settings settings(context.environment, SettingTrap::Nothing);
  std::vector<FileSetting> stored;
  for (const OptionSpec* option : allOptions())
    if (isConfiguration(*option))
      stored.push_back(
          {std::string(option->section), std::string(option->key), settings.read(*option).value_or("")});
  std::erase_if(stored, [](const FileSetting& entry) { return entry.setting.empty(); });
  // The keys of a section stand together.
  std::ranges::stable_sort(stored, {}, &FileSetting::section);
  if (file == "-") {
    if (context.output.json)
      throw ProgramError(ExitCode::BadInput,
                         "the file and the JSON document would both go to standard output",
                         "Omit --json, or name a file.");
    writeSettings(context.output.data, stored);
    return ExitCode::Success;
  }
  std::ostringstream text;
  writeSettings(text, stored);
  writeNewFile(file, text.str());
  if (context.output.json)
    JsonWriter(context.output.result)
        .beginObject()
        .key("exported")
        .number(static_cast<std::int64_t>(stored.size()))
        .endObject()
        .finish();
  else
    context.output.result << stored.size() << " options written to " << file << '\n';
  return ExitCode::Success;
}

ExitCode SettingsImportCommand::work(const CommandContext& context) {
  TextFile source(file);
  std::string text;
  for (; !source.atEnd(); source.advance()) text += source.current();
  std::vector<FileSetting> entries =
      readSettings(text, source.name(), "Nothing was changed. Correct the file and import it again.");
  for (FileSetting& entry : entries) {
    const SourceLocation location{source.name(), entry.line, entry.key};
    const OptionSpec* option = findOption(entry.section, entry.key);
    if (option != nullptr)
      entry.setting = acceptedValue(*option, entry.setting, location);
    else if (!force)
      throw ProgramError(ExitCode::BadInput, "there is no option '" + entry.section + "' '" + entry.key + "'",
                         "Nothing was changed. --force stores options that only another program knows.",
                         location);
  }
  BusyNotice wait(context.output.messages);
  doneAgainOnConflict(context.environment, "settings import", [&] {
    WorkUnit unit(context.connection(), &wait);
    const Settings settings(context.environment, SettingTrap::Nothing);
    for (const FileSetting& entry : entries)
      saveAndCheck(settings, entry.section, entry.key, entry.setting, false);
    unit.commit();
    return true;
  });
  if (context.output.json)
    JsonWriter(context.output.result)
        .beginObject()
        .key("imported")
        .number(static_cast<std::int64_t>(entries.size()))
        .endObject()
        .finish();
  else
    context.output.result << entries.size() << " options imported\n";
  return ExitCode::Success;
}

} // namespace qx::cli
