#include "adapters/system/whole_characters.h"

namespace qx {
namespace {

constexpr std::size_t longestPortion = 4096;

/// How many bytes a character has that begins with this one; 1 for what begins none.
std::size_t bytesOf(char first) {
  const auto byte = static_cast<unsigned char>(first);
  if (byte >= 0xF0) return 4;
  if (byte >= 0xE0) return 3;
  return byte >= 0xC0 ? 2 : 1;
}

/// The length of the text without a character at its end that is not complete.
std::size_t wholeLength(std::string_view text) {
  constexpr std::size_t mostMissing = 3;
  for (std::size_t back = 1; back <= mostMissing && back <= text.size(); ++back) {
    const std::size_t at = text.size() - back;
    const bool continues = (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
    if (!continues) return bytesOf(text[at]) > back ? at : text.size();
  }
  return text.size();
}

} // namespace

WholeCharacters::~WholeCharacters() {
  if (!waiting_.empty()) sink_(waiting_);
}

WholeCharacters::int_type WholeCharacters::overflow(int_type character) {
  if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
  const char c = traits_type::to_char_type(character);
  return xsputn(&c, 1) == 1 ? character : traits_type::eof();
}

std::streamsize WholeCharacters::xsputn(const char* text, std::streamsize length) {
  waiting_.append(text, static_cast<std::size_t>(length));
  return waiting_.size() < longestPortion || sync() == 0 ? length : 0;
}

int WholeCharacters::sync() {
  const std::size_t whole = wholeLength(waiting_);
  const bool taken = whole == 0 || sink_(std::string_view(waiting_).substr(0, whole));
  waiting_.erase(0, whole);
  return taken ? 0 : -1;
}

} // namespace qx
