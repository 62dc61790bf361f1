#include "cli/terminal_text.h"

#include "model/date.h"

#include <cstdlib>
#include <memory>
#include <utf8proc.h>

namespace qx::cli {
namespace {

/// The library hands over memory of `malloc`.
struct FreeMemory {
  // NOLINTNEXTLINE(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory)
  void operator()(utf8proc_uint8_t* memory) const { std::free(memory); }
};

const utf8proc_uint8_t* bytesOf(std::string_view text) {
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast)
  return reinterpret_cast<const utf8proc_uint8_t*>(text.data());
}

constexpr std::string_view ellipsis = "…";

/// The character that a text begins with.
struct Character {
  std::size_t bytes;
  std::size_t columns;
  bool shown; ///< false for a control character or a malformed byte
};

Character firstOf(std::string_view text) {
  utf8proc_int32_t character = 0;
  const auto length = utf8proc_iterate(bytesOf(text), static_cast<utf8proc_ssize_t>(text.size()), &character);
  if (length <= 0) return {1, 1, false};
  const auto bytes = static_cast<std::size_t>(length);
  if (utf8proc_category(character) == UTF8PROC_CATEGORY_CC) return {bytes, 1, false};
  return {bytes, static_cast<std::size_t>(utf8proc_charwidth(character)), true};
}

std::size_t columnsOf(std::string_view text) {
  std::size_t columns = 0;
  for (; !text.empty(); text.remove_prefix(firstOf(text).bytes)) columns += firstOf(text).columns;
  return columns;
}

std::string fittedFromBegin(std::string_view text, std::size_t width, bool cut) {
  std::string line;
  std::size_t used = 0;
  // Where the text ends when it is cut.
  std::size_t kept = 0;
  std::size_t keptColumns = 0;
  while (!text.empty() && text.front() != '\r' && text.front() != '\n') {
    const Character character = firstOf(text);
    if (cut && used + character.columns > width) {
      line.resize(kept);
      used = keptColumns;
      if (used < width) {
        line += ellipsis;
        ++used;
      }
      break;
    }
    line += character.shown ? text.substr(0, character.bytes) : " ";
    text.remove_prefix(character.bytes);
    used += character.columns;
    if (used < width) {
      kept = line.size();
      keptColumns = used;
    }
  }
  return used < width ? line.append(width - used, ' ') : line;
}

std::string fittedByEnds(std::string_view text, std::size_t width) {
  const std::string whole = fittedFromBegin(text, 0, false);
  std::size_t columns = columnsOf(whole);
  if (columns <= width) return fittedFromBegin(whole, width, true);
  std::string line = fittedFromBegin(whole, width / 2 + 1, true);
  line.erase(line.find_last_not_of(' ') + 1);
  const std::size_t room = width - columnsOf(line);
  // No mark without the letter that it belongs to.
  std::string_view end = whole;
  while (!end.empty() && (columns > room || firstOf(end).columns == 0)) {
    columns -= firstOf(end).columns;
    end.remove_prefix(firstOf(end).bytes);
  }
  return line.append(end).append(room - columns, ' ');
}

} // namespace

std::string composed(std::string_view text) {
  constexpr auto form = static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE);
  utf8proc_uint8_t* result = nullptr;
  const auto length = utf8proc_map(bytesOf(text), static_cast<utf8proc_ssize_t>(text.size()), &result, form);
  const std::unique_ptr<utf8proc_uint8_t, FreeMemory> owner(result);
  if (length < 0) return std::string(text);
  return {result, result + length};
}

std::string momentText(std::string_view stamp) {
  const auto moment = parseTimeStamp(stamp);
  if (!moment) return std::string(stamp);
  const auto two = [](int number) { return (number < 10 ? "0" : "") + std::to_string(number); };
  return germanDate(moment->date) + ' ' + two(moment->hour) + ':' + two(moment->minute) + ':' +
         two(moment->second);
}

std::string fitted(std::string_view text, std::size_t width, Fitting fitting) {
  return fitting == Fitting::Ends ? fittedByEnds(text, width)
                                  : fittedFromBegin(text, width, fitting == Fitting::Cut);
}

} // namespace qx::cli
