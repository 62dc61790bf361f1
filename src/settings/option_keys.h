// Every settings key that the component reads or writes, in one table.
#pragma once

#include <cstdint>
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
};

enum class OptionStore : std::uint8_t { Shared, Local };

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
};

/// All keys. Those that the options dialog shows come first, in its order of loading and saving: the general
/// ones, then the customer-specific ones.
std::span<const OptionKey> optionKeys();

/// The entry of a section and key, or null. The local store and the shared one have no key in common.
const OptionKey* findOptionKey(std::string_view section, std::string_view key);

} // namespace qx
