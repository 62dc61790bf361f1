// Conversion between stored values and typed texts in controls and grid cells.
#pragma once

#include "platform/value.h"
#include "ui/control.h"
#include "ui/job_grid.h"

#include <string>
#include <string_view>

namespace qx {

/// The kind of control that edits the cells of a column.
ControlKind editorOf(GridColumnKind kind);

/// A stored value as shown in its editor.
std::string editedText(ControlKind kind, const Value& stored);
/// Why a typed text cannot be stored, for example "'12x' ist keine Zahl."; empty when it can, as the empty
/// text always can.
std::string refusalOf(ControlKind kind, std::string_view typed);
/// A number or date in its usual form; any other text unchanged.
std::string respelt(ControlKind kind, std::string_view typed);

} // namespace qx
