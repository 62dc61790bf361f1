// Values as they are typed, in controls and in cells of grids.
#pragma once

#include "platform/value.h"
#include "ui/control.h"
#include "ui/job_grid.h"

#include <string>
#include <string_view>

namespace qx {

/// The control that edits the cells of a column.
ControlKind editorOf(GridColumnKind kind);

/// A stored value as its editor shows it.
std::string editedText(ControlKind kind, const Value& stored);
/// Why a typed text cannot be stored, as "'12x' ist keine Zahl."; empty when it can. The empty text always
/// can.
std::string refusalOf(ControlKind kind, std::string_view typed);
/// A number or date in its usual spelling; any other text as it is.
std::string respelt(ControlKind kind, std::string_view typed);

} // namespace qx
