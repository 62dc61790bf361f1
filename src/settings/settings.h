// Access to the shared and the local settings store.
#pragma once

#include "platform/environment.h"
#include "settings/options.h"

#include <optional>
#include <string>
#include <string_view>

namespace qx {

/// The component's application name.
inline constexpr std::string_view applicationName = "QXImportJob";

/// Which failures of a store are skipped. All others reach the caller.
enum class SettingTrap : std::uint8_t {
  Everything,
  Refusals, ///< all but fatal store errors (disk, damage, a lost unit of work) and lack of memory
  Nothing,
};

/// Reads and writes settings as texts. When a failure is skipped, a read returns "" and a write has no
/// effect; both are reported to the diagnostics.
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
  void save(std::string_view application, std::string_view section, std::string_view key,
            std::string_view setting, bool local = false) const;

  /// The value of an option, from its store and by its format. A check that is not set, cannot be read or
  /// holds an invalid text is off.
  bool operator[](const CheckOption& option) const;
  /// The same for options that can also be unset, which is null.
  std::optional<bool> operator[](const TriStateOption& option) const;
  /// The default when the key is absent or cannot be read.
  std::string operator[](const TextOption& option) const;
  /// 0 for none. An invalid or ambiguous number is not used but reported to the diagnostics.
  double operator[](const AmountOption& option) const;
  std::optional<std::int16_t> operator[](const WholeOption& option) const;
  /// As stored; null when the store could not be read.
  std::optional<std::string> read(const OptionSpec& option) const;
  void save(const OptionSpec& option, std::string_view setting) const;

private:
  std::optional<bool> state(const OptionSpec& option) const;
  std::string text(const OptionSpec& option) const;
  template <class Access>
  std::optional<std::string> attempt(const std::string& where, Access&& access) const;

  Environment& environment_;
  SettingTrap trap_;
};

} // namespace qx
