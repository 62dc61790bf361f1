// Lists of words in one text.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qx {

/// The parts of a text between the marks.
inline std::vector<std::string> split(std::string_view text, char mark = ' ') {
  std::vector<std::string> parts(1);
  for (const char c : text)
    if (c == mark)
      parts.emplace_back();
    else
      parts.back() += c;
  return parts;
}

/// "a=1 b=2" as pairs.
inline std::vector<std::pair<std::string, std::string>> pairs(std::string_view text) {
  std::vector<std::pair<std::string, std::string>> all;
  for (const std::string& part : split(text)) {
    const auto equals = part.find('=');
    all.emplace_back(part.substr(0, equals), part.substr(equals + 1));
  }
  return all;
}

} // namespace qx
