// The order that a job has become, as the ERP has it.
#pragma once

#include "platform/database.h"
#include "store/json_writer.h"

#include <memory>
#include <string_view>

namespace qx::cli {

/// Prices and sums of a written order.
class WrittenOrder {
public:
  /// Reads the order of this number, a text; there is none for an empty one. The connection outlives the
  /// object. Raises database errors.
  WrittenOrder(Connection& connection, std::string_view number);

  /// The member `order`: the sums and the article lines; nothing when there is no such order. Call it once.
  void write(JsonWriter& json);

private:
  std::unique_ptr<Recordset> header_;
  std::unique_ptr<Recordset> lines_;
};

} // namespace qx::cli
