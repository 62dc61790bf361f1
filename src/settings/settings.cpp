#include "settings/settings.h"

#include "platform/trapped.h"

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

/// Whatever is skipped, a shortage of memory says nothing about one setting.
bool isOutOfMemory(const std::exception& failure) {
  return dynamic_cast<const std::bad_alloc*>(&failure) != nullptr;
}

Session& connectedSession(const Environment& environment) {
  if (!environment.session) throw std::runtime_error("no ERP session is connected");
  return *environment.session;
}

} // namespace

/// Runs one access; null when it failed and that is skipped.
template <class Access>
std::optional<std::string> Settings::attempt(const std::string& where, Access&& access) const {
  std::optional<std::string> text;
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

std::string Settings::getShared(std::string_view section, std::string_view key,
                                std::string_view fallback) const {
  return attempt(describe("shared", section, key, "read"),
                 [&] { return connectedSession(environment_).GetSetting(section, key, fallback); })
      .value_or(std::string(fallback));
}

void Settings::save(std::string_view application, std::string_view section, std::string_view key,
                    std::string_view setting, bool local) const {
  attempt(describe(local ? "local" : "shared", section, key, "written"), [&] {
    if (local)
      environment_.localSettings.write(application, section, key, setting);
    else
      connectedSession(environment_).SaveSetting(section, key, setting);
    return std::string();
  });
}

std::optional<bool> Settings::state(std::string_view section, std::string_view key) const {
  const OptionKey* check = findOptionKey(section, key);
  if (check == nullptr) throw std::logic_error("no option is called " + std::string(key));
  const bool local = check->store == OptionStore::Local;
  const auto text = read(applicationName, section, key, local);
  return text ? checkState(*check, *text) : std::nullopt;
}

bool Settings::customerSpecific() const { return get(applicationName, "Allgemein", "Individual") == "VLK"; }

} // namespace qx
