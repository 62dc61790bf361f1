#include "adapters/odbc/connection_string.h"

#include "model/text.h"

#include <algorithm>
#include <stdexcept>

namespace qx::odbc {
namespace {

/// Takes the value at the beginning of the text, up to the semicolon; braces may enclose semicolons, and a
/// closing one is doubled.
std::string takeValue(std::string_view& text) {
  std::string value;
  if (!text.starts_with('{')) {
    const auto end = std::min(text.find(';'), text.size());
    value = trimWhitespace(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    return value;
  }
  std::size_t at = 1;
  for (; at < text.size(); ++at) {
    if (text[at] == '}') {
      if (at + 1 == text.size() || text[at + 1] != '}') break;
      ++at;
    }
    value += text[at];
  }
  if (at >= text.size()) throw std::invalid_argument("a brace is not closed");
  text.remove_prefix(at + 1);
  const auto next = text.find_first_not_of(' ');
  if (next != std::string_view::npos && text[next] != ';')
    throw std::invalid_argument("behind a closing brace stands neither a semicolon nor the end");
  text.remove_prefix(next == std::string_view::npos ? text.size() : next + 1);
  return value;
}

std::string braced(std::string_view value) {
  if (value.find_first_of("[]{}();,?*=!@ ") == std::string_view::npos) return std::string(value);
  std::string text = "{";
  for (const char c : value) text.append(c == '}' ? 2 : 1, c);
  return text + "}";
}

bool isPassword(std::string_view keyword) {
  return equalCodes(keyword, "PWD") || equalCodes(keyword, "Password");
}

} // namespace

ConnectionString::ConnectionString(std::string_view text) {
  while (true) {
    text = trimWhitespace(text);
    if (text.starts_with(';')) {
      text.remove_prefix(1);
      continue;
    }
    if (text.empty()) break;
    const auto equals = text.find('=');
    const std::string_view keyword = trimWhitespace(text.substr(0, std::min(equals, text.size())));
    // What stands there may be a password, so only a keyword is shown.
    if (equals == std::string_view::npos || keyword.find(';') != std::string_view::npos)
      throw std::invalid_argument("part " + std::to_string(parts_.size() + 1) +
                                  " is not of the form Keyword=value");
    if (keyword.empty())
      throw std::invalid_argument("part " + std::to_string(parts_.size() + 1) + " has no keyword");
    text = trimWhitespace(text.substr(equals + 1));
    std::string value = takeValue(text);
    // The first of equal keywords holds.
    if (!has(keyword)) parts_.push_back({std::string(keyword), std::move(value)});
  }
  if (parts_.empty()) throw std::invalid_argument("it is empty");
}

const ConnectionString::Part* ConnectionString::find(std::string_view keyword) const {
  const auto found =
      std::ranges::find_if(parts_, [&](const Part& part) { return equalCodes(part.keyword, keyword); });
  return found == parts_.end() ? nullptr : &*found;
}

bool ConnectionString::has(std::string_view keyword) const { return find(keyword) != nullptr; }

std::string_view ConnectionString::value(std::string_view keyword) const {
  const Part* part = find(keyword);
  return part == nullptr ? std::string_view() : std::string_view(part->value);
}

void ConnectionString::set(std::string_view keyword, std::string_view value) {
  for (Part& part : parts_)
    if (equalCodes(part.keyword, keyword)) {
      part.value = value;
      return;
    }
  parts_.push_back({std::string(keyword), std::string(value)});
}

std::string ConnectionString::text() const {
  std::string text;
  for (const Part& part : parts_) text += part.keyword + "=" + braced(part.value) + ";";
  return text;
}

std::string ConnectionString::displayed() const {
  std::string text;
  for (const Part& part : parts_) {
    if (isPassword(part.keyword)) continue;
    if (!text.empty()) text += ";";
    text += part.keyword + "=" + braced(part.value);
  }
  return text;
}

} // namespace qx::odbc
