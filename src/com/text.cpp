#include "com/text.h"

#include <climits>
#include <new>
#include <stdexcept>

namespace qx::com {
namespace {

int lengthOf(std::size_t size) {
  if (size > INT_MAX / 4) throw std::bad_alloc();
  return static_cast<int>(size);
}

} // namespace

std::wstring wide(std::string_view text) {
  if (text.empty()) return {};
  const int bytes = lengthOf(text.size());
  std::wstring result(
      static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, nullptr, 0)), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, result.data(), lengthOf(result.size()));
  return result;
}

std::string narrow(std::wstring_view text) {
  if (text.empty()) return {};
  const int units = lengthOf(text.size());
  std::string result(static_cast<std::size_t>(
                         WideCharToMultiByte(CP_UTF8, 0, text.data(), units, nullptr, 0, nullptr, nullptr)),
                     '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), units, result.data(), lengthOf(result.size()), nullptr,
                      nullptr);
  return result;
}

Bstr::Bstr(std::string_view text) {
  const std::wstring content = wide(text);
  text_ = SysAllocStringLen(content.data(), static_cast<UINT>(content.size()));
  if (text_ == nullptr) throw std::bad_alloc();
}

std::string textIn(BSTR text) {
  return text == nullptr ? std::string() : narrow(std::wstring_view(text, SysStringLen(text)));
}

} // namespace qx::com
