// Texts of the system's automation: UTF-16 with a length.
#pragma once

#include "com/windows_headers.h"

#include <string>
#include <string_view>

namespace qx::com {

/// UTF-8 and UTF-16; what is malformed becomes U+FFFD.
std::wstring wide(std::string_view text);
std::string narrow(std::wstring_view text);

/// An owned automation text.
class Bstr {
public:
  Bstr() = default;
  explicit Bstr(std::string_view text);
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  ~Bstr() { SysFreeString(text_); }

  BSTR get() const { return text_; }
  BSTR* receive() { return &text_; }
  /// The caller frees it.
  BSTR release() {
    BSTR given = text_;
    text_ = nullptr;
    return given;
  }

private:
  BSTR text_ = nullptr;
};

/// The text in an automation text, NUL characters included; null is empty.
std::string textIn(BSTR text);

} // namespace qx::com
