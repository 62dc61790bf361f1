// Handles of the ODBC driver manager.
#pragma once

#include <utility>

namespace qx::odbc {

/// Owns an environment, connection or statement handle. The handles below it must be freed before.
class Handle {
public:
  Handle() = default;
  /// `kind` is one of the SQL_HANDLE constants. Raises `StoreError` when there is no memory for the handle.
  Handle(short kind, void* parent);
  Handle(Handle&& other) noexcept : kind_(other.kind_), handle_(std::exchange(other.handle_, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(kind_, other.kind_);
    std::swap(handle_, other.handle_);
    return *this;
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle();

  void* get() const { return handle_; }
  /// Forgets the handle, which something else has freed.
  void forget() { handle_ = nullptr; }

private:
  short kind_ = 0;
  void* handle_ = nullptr;
};

} // namespace qx::odbc
