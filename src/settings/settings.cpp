#include "settings/settings.h"

#include "model/german_text.h"
#include "model/text.h"
#include "platform/conflict_retry.h"
#include "platform/failure.h"

#include <stdexcept>

namespace qx {
namespace {

/// How diagnostics name a setting: "shared setting ImportJob2/Löschen could not be read".
std::string describe(std::string_view store, std::string_view section, std::string_view key,
                     std::string_view verb) {
  std::string text(store);
  text.append(" setting ").append(section).append("/").append(key);
  text.append(" could not be ").append(verb);
  return text;
}

Session& connectedSession(const Environment& environment) {
  if (!environment.session) throw std::runtime_error("no ERP session is connected");
  return *environment.session;
}

} // namespace

/// Runs one access; null when it failed and the failure is skipped.
template <class Access>
std::optional<std::string> Settings::attempt(const std::string& where, Access&& access) const {
  std::optional<std::string> text;
  // Lack of memory is never skipped: it is no failure of this setting.
  trapped(
      environment_.diagnostics, {where, {}, &isOutOfMemory}, [&] { text = access(); },
      [this](const std::exception& failure) {
        if (trap_ == SettingTrap::Nothing || (trap_ == SettingTrap::Refusals && isFatal(failure))) throw;
      });
  return text;
}

std::string Settings::get(std::string_view application, std::string_view section, std::string_view key,
                          bool local) const {
  return read(application, section, key, local).value_or("");
}

std::optional<std::string> Settings::read(std::string_view application, std::string_view section,
                                          std::string_view key, bool local) const {
  if (local)
    return attempt(describe("local", section, key, "read"),
                   [&] { return environment_.localSettings.read(application, section, key); });
  return attempt(describe("shared", section, key, "read"),
                 [&] { return connectedSession(environment_).GetSetting(section, key, std::nullopt); });
}

void Settings::save(std::string_view application, std::string_view section, std::string_view key,
                    std::string_view setting, bool local) const {
  attempt(describe(local ? "local" : "shared", section, key, "written"), [&] {
    if (local)
      environment_.localSettings.write(application, section, key, setting);
    else
      doneAgainOnConflict(environment_, "setting",
                          [&] { connectedSession(environment_).SaveSetting(section, key, setting); });
    return std::string();
  });
}

std::optional<std::string> Settings::read(const OptionSpec& option) const {
  return read(applicationName, option.section, option.key, option.isLocal());
}

void Settings::save(const OptionSpec& option, std::string_view setting) const {
  save(applicationName, option.section, option.key, setting, option.isLocal());
}

std::optional<bool> Settings::state(const OptionSpec& option) const {
  const auto text = read(option);
  return text ? checkState(option, *text) : std::nullopt;
}

/// Asks the ERP for its own default.
std::string Settings::text(const OptionSpec& option) const {
  if (option.fallback.empty()) return read(option).value_or("");
  return attempt(
             describe("shared", option.section, option.key, "read"),
             [&] {
               return connectedSession(environment_).GetSetting(option.section, option.key, option.fallback);
             })
      .value_or(std::string(option.fallback));
}

bool Settings::operator[](const CheckOption& option) const { return state(option).value_or(false); }

std::optional<bool> Settings::operator[](const TriStateOption& option) const { return state(option); }

std::string Settings::operator[](const TextOption& option) const { return text(option); }

double Settings::operator[](const AmountOption& option) const {
  const std::string stored = text(option);
  if (trimBlanks(stored).empty()) return 0;
  const std::string doubt = doubtAbout(stored);
  if (doubt.empty()) return *parseTypedNumber(stored);
  environment_.diagnostics.report({"setting " + std::string(option.section) + "/" + std::string(option.key),
                                   "'" + stored + "' " + doubt + " and is not used", ""});
  return 0;
}

std::optional<std::int16_t> Settings::operator[](const WholeOption& option) const {
  return settingToInt16(text(option));
}

} // namespace qx
