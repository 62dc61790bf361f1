// Access to the shared and the local settings store.
#pragma once

#include "platform/environment.h"
#include "settings/option_keys.h"

#include <cstdint>
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
  /// A shared value with the default that the ERP is asked to give when the key is absent.
  std::string getShared(std::string_view section, std::string_view key, std::string_view fallback) const;
  void save(std::string_view application, std::string_view section, std::string_view key,
            std::string_view setting, bool local = false) const;

  /// An option of the section `ImportJob2` of the shared store.
  std::string option(std::string_view key) const { return get(applicationName, optionSection, key); }
  /// The option as a 16-bit integer; `fallback` when it is absent, not a number or out of range.
  std::int16_t option16(std::string_view key, std::int16_t fallback = 0) const;
  /// Whether a check of the option table is on, by the rule and from the store of its key.
  bool isOn(std::string_view key) const { return isOn(optionSection, key); }
  bool isOn(std::string_view section, std::string_view key) const;
  /// `Allgemein`/`Individual` equals "VLK".
  bool customerSpecific() const;

private:
  template <class Access>
  std::optional<std::string> trapped(const std::string& where, Access&& access) const;

  Environment& environment_;
  SettingTrap trap_;
};

} // namespace qx
