// The form with all fields of a position of a staged order, without a toolkit.
#pragma once

#include "ui/form.h"

#include <map>
#include <string>

namespace qx {

class PositionGrid;

/// Also shows fields without a grid column, such as the cost assignment. A changed field is stored in the
/// position as soon as the clerk leaves it; a refused text stays in its control, with the reason.
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
