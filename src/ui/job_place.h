// Where a job stands among those that a dialog steps through.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qx {

/// The default is a job that stands alone.
struct JobPlace {
  std::size_t number = 0; ///< from 1
  std::size_t count = 0;

  bool isListed() const { return count > 0; }
  bool hasNext() const { return number < count; }
  bool hasPrevious() const { return number > 1; }

  friend bool operator==(const JobPlace&, const JobPlace&) = default;
};

/// Which job the clerk wants after a dialog.
enum class DialogEnd : std::uint8_t { Closed, Next, Previous };

} // namespace qx
