// Every settings key that the component reads or writes, in one table.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace qx {

/// What the text of a setting holds.
enum class OptionType : std::uint8_t {
  Check,         ///< "0" or "1"
  Text,          ///< any text
  Number,        ///< decimal text, German comma allowed
  Integer,       ///< decimal text of a whole number
  ArticleNumber, ///< an article, or empty for none
  TimeStamp,     ///< a day as the first eight digits of a time stamp
};

enum class OptionStore : std::uint8_t { Shared, Local };

/// Which texts turn a check on. Each reader has had its own rule from the beginning.
enum class OnRule : std::uint8_t {
  AnyNumber,  ///< a number other than 0; 0 is off
  AtLeastOne, ///< a number from 1; 0 is off
  One,        ///< exactly "1"; exactly "0" is off
  Truth,      ///< a number other than 0, "True" or "Wahr"; 0, "False" and "Falsch" are off
};

/// Whose key it is: the component's own, or one of the ERP that is only read.
enum class OptionOwner : std::uint8_t { Component, Erp };

/// One settings key. Texts are literals.
struct OptionKey {
  std::string_view section;
  std::string_view key;
  OptionType type = OptionType::Check;
  OptionStore store = OptionStore::Shared;
  OptionOwner owner = OptionOwner::Component;
  /// What the key counts as when it was never written.
  std::string_view fallback;
  /// The control of the options dialog; empty when the dialog does not show the key.
  std::string_view control;
  /// Who reads it, for people.
  std::string_view readers;
  /// Shown, saved and used in customer-specific mode only.
  bool customerSpecific = false;
  OnRule on = OnRule::AnyNumber; ///< of a check
  bool threeStates = false;      ///< a check for whose readers "not set" is neither on nor off
};

/// All keys. Those that the options dialog shows come first, in its order of loading and saving: the general
/// ones, then the customer-specific ones.
std::span<const OptionKey> optionKeys();

/// Whether the text turns the check on or off: the one judge for those who read it, show it and store it.
/// Null when the readers of the key make nothing of the text, the empty one included; for them it is off
/// then.
std::optional<bool> checkState(const OptionKey& option, std::string_view text);

/// The text of a number setting as 16 bits between blanks with an optional sign; null when it is none or does
/// not fit.
std::optional<std::int16_t> settingToInt16(std::string_view text);

/// The entry of a section and key, or null. The local store and the shared one have no key in common.
const OptionKey* findOptionKey(std::string_view section, std::string_view key);

} // namespace qx
