#include "cli/commands.h"

#include "cli/json_writer.h"
#include "cli/terminal_text.h"
#include "model/german_text.h"
#include "settings/settings.h"

#include <ostream>
#include <vector>

namespace qx::cli {
namespace {

struct Entry {
  std::string_view section;
  std::string_view key;
  std::string setting;
  bool local;
  std::string_view meaning = {}; ///< in lists
};

void writeMembers(JsonWriter& json, const Entry& entry) {
  json.beginObject();
  json.key("Section").text(entry.section);
  json.key("Key").text(entry.key);
  json.key("Value").text(entry.setting);
  json.key("Local").boolean(entry.local);
  if (!entry.meaning.empty()) json.key("Meaning").text(entry.meaning);
  json.endObject();
}

void print(const Output& output, const Entry& entry) {
  if (output.json) {
    JsonWriter json(output.result);
    writeMembers(json, entry);
    json.finish();
  } else {
    output.result << entry.setting << '\n';
  }
}

/// Unknown settings are stored too: a host may read them.
void noteUnknown(const Output& output, std::string_view section, std::string_view key, bool local) {
  const OptionSpec* option = findOption(section, key);
  if (option == nullptr)
    output.messages << "Note: no option '" << section << "' '" << key
                    << "' is known. 'qximportjob settings list' shows those that are.\n";
  else if (local != option->isLocal())
    output.messages << "Note: this option is read from the " << (local ? "shared" : "local") << " store; "
                    << (local ? "leave --local out.\n" : "add --local.\n");
}

std::string wrongNumber(std::string_view text) {
  if (readingsOf(text)) return "this " + doubtAbout(text) + "; type one of them";
  return parseTypedNumber(text) ? "" : "the option is a number";
}

/// The stamp of a day typed as a stamp or as dd.mm.yyyy; null for anything else.
std::optional<std::string> typedStamp(std::string_view text) {
  auto moment = parseTimeStamp(text);
  if (!moment) moment = parseGermanDateTime(text);
  if (!moment) return std::nullopt;
  return timeStamp(*moment);
}

/// Validates a text by the reading rule of its option; an unreadable text is not stored.
std::string wrongValue(const OptionSpec& option, std::string_view text) {
  if (text.empty()) return {};
  switch (option.rule) {
  case OptionRule::NonZero:
  case OptionRule::AtLeastOne:
  case OptionRule::One:
  case OptionRule::Truth:
    return checkState(option, text) ? "" : "the option is 0 or 1";
  case OptionRule::Integer:
    return settingToInt16(text) ? "" : "the option is a whole number from -32768 to 32767";
  case OptionRule::Number:
    return wrongNumber(text);
  case OptionRule::Day:
    return typedStamp(text) ? "" : "the option is a day, dd.mm.yyyy or a time stamp yyyymmdd";
  case OptionRule::CustomerSpecific:
  case OptionRule::Text:
  case OptionRule::ArticleNumber:
    break;
  }
  return {};
}

} // namespace

ExitCode SettingsListCommand::work(const CommandContext& context) {
  const Settings settings(context.environment, SettingTrap::Nothing);
  // Reads all before printing the first: half a list would look complete.
  std::vector<Entry> entries;
  for (const OptionSpec* option : allOptions())
    entries.push_back({option->section, option->key, settings.read(*option).value_or(""), option->isLocal(),
                       option->english});
  JsonWriter json(context.output.result);
  if (context.output.json) json.beginArray();
  for (const Entry& entry : entries) {
    constexpr std::size_t sectionWidth = 16;
    constexpr std::size_t keyWidth = 26;
    if (context.output.json)
      writeMembers(json, entry);
    else
      context.output.result << fitted(entry.section, sectionWidth) << fitted(entry.key, keyWidth)
                            << (entry.local ? "local   " : "shared  ") << entry.setting << '\n';
  }
  if (context.output.json) json.endArray().finish();
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
  const OptionSpec* option = findOption(section, key);
  if (option == nullptr) return;
  if (const auto wrong = wrongValue(*option, value); !wrong.empty())
    throw ProgramError(ExitCode::BadInput, "'" + value + "': " + wrong, "Nothing was changed.");
  if (option->rule == OptionRule::Day && !value.empty()) value = *typedStamp(value);
}

ExitCode SettingsSetCommand::work(const CommandContext& context) {
  const Settings settings(context.environment, SettingTrap::Nothing);
  noteUnknown(context.output, section, key, local);
  settings.save(applicationName, section, key, value, local);
  // A trigger of the database can silently drop it.
  const std::string stored = settings.get(applicationName, section, key, local);
  if (stored != value)
    throw ProgramError(ExitCode::Failure,
                       "the database did not store the setting '" + section + "' '" + key + "'");
  print(context.output, {section, key, stored, local});
  return ExitCode::Success;
}

} // namespace qx::cli
