// The ERP's protocol component.
#pragma once

#include "platform/database.h"

#include <string>
#include <string_view>

namespace qx {

/// `QXHProto.Protokoll`: protocols with lines of short and long text columns. A line is built by
/// `AddNewRecord` and `SetField` and written by `UpdateRecord`.
class Protokoll {
public:
  static constexpr int shortText = 10; ///< kind of the short text columns 0 to 8
  static constexpr int longText = 12;  ///< kind of the long text column 0

  virtual ~Protokoll() = default;
  /// Returns the identity of the new protocol.
  virtual std::string CreateProtokoll(Connection& connection, std::string_view title, std::string_view kind,
                                      std::string_view list) = 0;
  virtual bool OpenProtokoll(Connection& connection, std::string_view id) = 0;
  /// Raises `std::logic_error` when no protocol is open.
  virtual void AddNewRecord() = 0;
  virtual void SetField(int kind, int column, std::string_view value) = 0;
  virtual void UpdateRecord() = 0;
};

} // namespace qx
