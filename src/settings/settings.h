// Access to the shared and the local settings store.
#pragma once

#include "platform/environment.h"
#include "settings/option_keys.h"

#include <optional>
#include <string>
#include <string_view>

namespace qx {

/// The component's own application name.
inline constexpr std::string_view applicationName = "QXImportJob";
/// The application name under which some reads of the run are made; the shared store ignores it.
inline constexpr std::string_view runApplicationName = "ImportJob";
/// The section of the component's options.
inline constexpr std::string_view optionSection = "ImportJob2";

/// Which failures of a store are skipped. What is not reaches the caller.
enum class SettingTrap : std::uint8_t {
  Everything,
  Refusals, ///< all but a store that itself cannot go on (disk, damage, a lost unit of work) or memory
  Nothing,
};

/// Reads and writes settings as texts. Of the failures that are skipped a failed read gives "", a failed
/// write is lost; both are told to the diagnostics.
class Settings {
public:
  explicit Settings(Environment& environment, SettingTrap trap = SettingTrap::Everything)
      : environment_(environment), trap_(trap) {}

  /// A shared value, whatever the application name; a local one when `local` is true.
  std::string get(std::string_view application, std::string_view section, std::string_view key,
                  bool local = false) const;
  /// The same; null when the store could not be read.
  std::optional<std::string> read(std::string_view application, std::string_view section,
                                  std::string_view key, bool local = false) const;
  /// A shared value; the default when the key is absent or cannot be read.
  std::string getShared(std::string_view section, std::string_view key, std::string_view fallback) const;
  void save(std::string_view application, std::string_view section, std::string_view key,
            std::string_view setting, bool local = false) const;

  /// An option of the section `ImportJob2` of the shared store.
  std::string option(std::string_view key) const { return get(applicationName, optionSection, key); }
  /// What a check of the option table is set to, by the rule and from the store of its key; null when it is
  /// not set, cannot be read or holds a text of which its readers make nothing.
  std::optional<bool> state(std::string_view key) const { return state(optionSection, key); }
  std::optional<bool> state(std::string_view section, std::string_view key) const;
  /// The same for those to whom such a check is off.
  bool isOn(std::string_view key) const { return isOn(optionSection, key); }
  bool isOn(std::string_view section, std::string_view key) const {
    return state(section, key).value_or(false);
  }
  /// `Allgemein`/`Individual` equals "VLK".
  bool customerSpecific() const;

private:
  template <class Access>
  std::optional<std::string> attempt(const std::string& where, Access&& access) const;

  Environment& environment_;
  SettingTrap trap_;
};

} // namespace qx
