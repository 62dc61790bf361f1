// Everything about one position of a staged order, without a toolkit.
#pragma once

#include "ui/form.h"

#include <map>
#include <string>

namespace qx {

class PositionGrid;

/// Shows also what the grid has no room for, the cost assignment among it. What the clerk leaves reaches the
/// position at once; a text that the position refuses stays in its control, with the reason.
class PositionDetails final : public Form {
public:
  /// The grid and its row must outlive the object.
  PositionDetails(PositionGrid& grid, std::size_t row, bool readOnly);

  std::span<const ControlGroup> groups() const override;
  void leave(std::size_t index) override;
  std::optional<std::size_t> refused() const override;
  void dropRefused(std::size_t index) override;
  bool lookUp(std::size_t index) override;

private:
  void show();

  PositionGrid& grid_;
  std::size_t row_;
  std::map<std::size_t, std::string> refused_; ///< reasons by control
};

} // namespace qx
