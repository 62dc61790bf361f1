// The controls of a dialog, described without a toolkit.
#pragma once

#include "model/job_codes.h"
#include "rules/combo_lists.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace qx {

enum class ControlKind : std::uint8_t {
  Text,   ///< one line
  Note,   ///< several lines
  Number, ///< a German decimal number
  Money,  ///< the same with two decimals at least
  Date,   ///< dd.mm.yyyy; may be empty
  Combo,  ///< a code of a master table, chosen from two columns of which one is shown; other texts can be
          ///< typed
  List,   ///< one of a few fixed codes, chosen by their texts
  Check,  ///< "1" or "0"
};

constexpr bool isNumeric(ControlKind kind) {
  return kind == ControlKind::Number || kind == ControlKind::Money;
}

/// The largest number in a control or cell: the ERP stores 15 digits, four of them decimals.
inline constexpr double largestNumber = 99999999999;

/// The constant properties of a control. Texts are literals; names are the object names in the window.
struct ControlSpec {
  std::string_view name{};
  std::string_view caption{}; ///< of the field, access key marked with '&'
  ControlKind kind = ControlKind::Text;
  std::string_view column{};      ///< of `ImportKopf`; empty for a control of no column
  std::string_view picture{};     ///< the picture control beside it; empty for none
  std::string_view button{};      ///< its lookup button; empty for none
  std::string_view lookup{};      ///< the name of the lookup that button and F4 open
  std::string_view description{}; ///< the label with the text of its code; empty for none
  bool customerSpecific = false;  ///< shown in customer-specific mode only
  bool displayOnly = false;       ///< can never be changed
};

/// Controls grouped under a heading.
struct ControlGroup {
  std::string_view caption;
  std::span<const ControlSpec> controls;
};

/// The items of a drop-down list.
struct ComboContent {
  ComboRows rows;
  int hiddenColumn = -1;
  int codeColumn = 1; ///< the column whose text is the control's value
  std::optional<std::size_t> selected;
};

/// The current state of a control.
struct ControlState {
  std::string text; ///< of a combo or list: the code; of a check box: "1" or "0"
  bool enabled = true;
  CheckStatus picture = CheckStatus::Clean; ///< of the picture beside it; none when clean
  std::string message;                      ///< the picture's tool tip
  std::string description;                  ///< the text of `ControlSpec::description`
  std::optional<std::string> master;        ///< the stored value from which it differs
};

} // namespace qx
