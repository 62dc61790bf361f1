#include "cli/harmless_buffer.h"

#include "model/control_characters.h"

#include <algorithm>
#include <utility>

namespace qx::cli {
namespace {

bool isControlByte(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (byte < 0x20 && c != '\n' && c != '\t') || byte == 0x7F;
}

/// C2 begins U+0080 to U+009F, E2 the separators of lines and the marks of direction.
bool mayBeginControl(char c) { return c == '\xC2' || c == '\xE2'; }

/// Whether the bytes are the beginning of such a character, and not yet the whole.
bool mayBecomeControl(std::string_view bytes) {
  return bytes == "\xC2" || bytes == "\xE2" || bytes == "\xE2\x80" || bytes == "\xE2\x81";
}

std::string_view sequenceOf(Style style) {
  switch (style) {
  case Style::Good:
    return "\033[32m";
  case Style::Warning:
    return "\033[33m";
  case Style::Bad:
    return "\033[31m";
  case Style::Faint:
    return "\033[2m";
  case Style::Plain:
    break;
  }
  return {};
}

} // namespace

HarmlessBuffer::int_type HarmlessBuffer::overflow(int_type character) {
  if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
  const char c = traits_type::to_char_type(character);
  return xsputn(&c, 1) == 1 ? character : traits_type::eof();
}

std::streamsize HarmlessBuffer::xsputn(const char* text, std::streamsize length) {
  const std::string_view all(text, static_cast<std::size_t>(length));
  const bool plain = begun_.empty() &&
                     std::ranges::none_of(all, [](char c) { return isControlByte(c) || mayBeginControl(c); });
  if (plain) return put(all) ? length : 0;
  std::string clean;
  for (const char c : all) take(c, clean);
  return put(clean) ? length : 0;
}

void HarmlessBuffer::take(char c, std::string& clean) {
  if (!begun_.empty()) {
    begun_ += c;
    if (mayBecomeControl(begun_)) return;
    std::string character = std::exchange(begun_, {});
    if (isControl(character)) {
      clean += ' ';
      return;
    }
    // The last byte may belong to the next character.
    character.pop_back();
    clean += character;
  }
  if (mayBeginControl(c))
    begun_ = c;
  else
    clean += isControlByte(c) ? ' ' : c;
}

bool HarmlessBuffer::put(std::string_view text) {
  used_ = used_ || !text.empty();
  if (text.empty()) return true;
  if (waits_) {
    waiting_ += text;
    return true;
  }
  if (line_ != nullptr) line_->erase();
  return forward(text);
}

bool HarmlessBuffer::forward(std::string_view text) {
  const auto write = [&](std::string_view part) {
    const auto length = static_cast<std::streamsize>(part.size());
    return target_->sputn(part.data(), length) == length;
  };
  if (!marks_) return write(text);
  while (!text.empty()) {
    const std::string mark = "<" + std::to_string(static_cast<int>(priority_)) + ">";
    if (atLineStart_ && !write(mark)) return false;
    const std::size_t length = std::min(text.find('\n'), text.size() - 1) + 1;
    if (!write(text.substr(0, length))) return false;
    atLineStart_ = text[length - 1] == '\n';
    text.remove_prefix(length);
  }
  return true;
}

void HarmlessBuffer::sequence(std::string_view bytes) { put(bytes); }

void HarmlessBuffer::markLines(Priority priority) {
  marks_ = true;
  priority_ = priority;
}

void HarmlessBuffer::wait(bool waits) {
  waits_ = waits;
  if (!waits) forward(std::exchange(waiting_, {}));
}

bool HarmlessBuffer::release() {
  const std::size_t length = waiting_.rfind('\n') + 1;
  if (length == 0) return false;
  forward(std::string_view(waiting_).substr(0, length));
  waiting_.erase(0, length);
  target_->pubsync();
  return true;
}

void HarmlessStream::print(std::string_view text, Style style) {
  const std::string_view sequence = colors_ ? sequenceOf(style) : std::string_view();
  if (!sequence.empty()) buffer_.sequence(sequence);
  *this << text;
  if (!sequence.empty()) buffer_.sequence("\033[0m");
}

} // namespace qx::cli
