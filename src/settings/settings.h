// Access to the shared and the local settings store.
#pragma once

#include "platform/environment.h"

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

/// Reads and writes settings as texts. Failures of either store are skipped: a failed read gives "", a failed
/// write is lost; both are told to the diagnostics.
class Settings {
public:
  explicit Settings(Environment& environment) : environment_(environment) {}

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
  /// A check option: on when it reads as a number other than 0.
  bool isOn(std::string_view key) const { return option16(key) != 0; }
  /// Exactly "1".
  bool isOne(std::string_view key) const { return option(key) == "1"; }
  /// `Allgemein`/`Individual` equals "VLK".
  bool customerSpecific() const;

private:
  Environment& environment_;
};

/// The text as a 16-bit integer between blanks with an optional sign; null when it is none or does not fit.
std::optional<std::int16_t> settingToInt16(std::string_view text);

} // namespace qx
