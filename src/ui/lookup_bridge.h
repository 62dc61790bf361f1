// Opens the ERP's lookup windows by name.
#pragma once

#include "platform/environment.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// Which documents "Belegauskunft" lists.
enum class LookupDocument : std::uint8_t { Lieferschein, Gutschrift, Rechnung };

class LookupBridge {
public:
  /// `environment` must outlive the object.
  explicit LookupBridge(Environment& environment) : environment_(environment) {}

  /// Lets the user choose in the ERP's own window; returns the values of the lookup's key fields, empty when
  /// nothing was chosen.
  ///
  /// `lookup` is for example "Kundenauskunft", in any case. `context` is the customer, the supplier or the
  /// kind of text to which the lookup is restricted. An unknown name shows a message box. A failure of the
  /// component is only reported to the diagnostics and leaves the caller's field unchanged.
  std::vector<std::string> open(std::string_view lookup, std::string_view context = {},
                                LookupDocument document = LookupDocument::Lieferschein);

private:
  Environment& environment_;
};

} // namespace qx
