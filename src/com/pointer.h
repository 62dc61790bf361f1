// Counted references to interfaces, and the base of our own objects.
#pragma once

#include "com/windows_headers.h"

#include <atomic>
#include <cstddef>
#include <utility>

namespace qx::com {

/// Holds one reference.
template <class Interface>
class Pointer {
public:
  Pointer() = default;
  /// Takes another reference.
  explicit Pointer(Interface* object) : object_(object) {
    if (object_ != nullptr) object_->AddRef();
  }
  Pointer(const Pointer& other) : Pointer(other.object_) {}
  Pointer(Pointer&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  Pointer& operator=(Pointer other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Pointer() {
    if (object_ != nullptr) object_->Release();
  }
  /// Takes over the caller's reference.
  static Pointer adopt(Interface* object) {
    Pointer pointer;
    pointer.object_ = object;
    return pointer;
  }

  Interface* get() const { return object_; }
  Interface* operator->() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }
  /// For a function that gives a reference.
  Interface** receive() {
    *this = Pointer();
    return &object_;
  }
  void** receiveAny() { return reinterpret_cast<void**>(receive()); }
  /// The caller releases it.
  Interface* release() { return std::exchange(object_, nullptr); }

private:
  Interface* object_ = nullptr;
};

/// Another interface of an object; null when it has none.
template <class Interface>
Pointer<Interface> query(IUnknown* object, const IID& id) {
  Pointer<Interface> found;
  if (object != nullptr) object->QueryInterface(id, found.receiveAny());
  return found;
}

/// How many objects of this library are alive, so that it is not unloaded under them.
inline std::atomic<long>& liveObjects() {
  static std::atomic<long> count = 0;
  return count;
}

/// Counts the references of an object that begins with one.
class Counted {
public:
  Counted() { ++liveObjects(); }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

protected:
  virtual ~Counted() { --liveObjects(); }
  ULONG retain() { return static_cast<ULONG>(++count_); }
  ULONG drop() {
    const long left = --count_;
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }

private:
  std::atomic<long> count_ = 1;
};

} // namespace qx::com
