#include "cli/harmless_buffer.h"

namespace qx::cli {
namespace {

constexpr char leadOfControls = '\xC2';

bool isControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (byte < 0x20 && c != '\n' && c != '\t') || byte == 0x7F;
}

bool completesControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 0x80 && byte <= 0x9F;
}

} // namespace

HarmlessBuffer::int_type HarmlessBuffer::overflow(int_type character) {
  if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
  const char c = traits_type::to_char_type(character);
  return xsputn(&c, 1) == 1 ? character : traits_type::eof();
}

std::streamsize HarmlessBuffer::xsputn(const char* text, std::streamsize length) {
  std::streamsize clean = 0; // start of the text not yet forwarded
  for (std::streamsize at = 0; at < length; ++at) {
    const char c = text[at];
    if (held_) {
      held_ = false;
      if (completesControl(c)) {
        if (!put(" ", 1)) return clean;
        clean = at + 1;
        continue;
      }
      if (!put(&leadOfControls, 1)) return clean;
    }
    const bool hold = c == leadOfControls;
    if (!hold && !isControl(c)) continue;
    if (!put(text + clean, at - clean) || (!hold && !put(" ", 1))) return clean;
    clean = at + 1;
    held_ = hold;
  }
  return put(text + clean, length - clean) ? length : clean;
}

} // namespace qx::cli
