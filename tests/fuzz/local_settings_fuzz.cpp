// Any bytes as a user's settings file and as a profile file of the ERP.
#include "adapters/local_settings/ini_text.h"
#include "adapters/local_settings/profile_ini_file.h"

#include "require.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

using namespace qx;

namespace {

/// Takes a text up to the separator off the front of the input.
std::string take(std::string_view& input) {
  const std::size_t end = std::min(input.find('\x1F'), input.size());
  std::string text(input.substr(0, end));
  input.remove_prefix(std::min(end + 1, input.size()));
  return text;
}

/// Null for content that is not text.
std::optional<std::string> settingOf(const std::string& content, std::string_view section,
                                     std::string_view key) {
  try {
    return settingIn(content, "QXImportJob", section, key);
  } catch (const std::runtime_error&) {
    return std::nullopt;
  }
}

/// What of the text before is not there any more.
std::string_view replacedPart(std::string_view before, std::string_view after) {
  while (!before.empty() && !after.empty() && before.front() == after.front()) {
    before.remove_prefix(1);
    after.remove_prefix(1);
  }
  while (!before.empty() && !after.empty() && before.back() == after.back()) {
    before.remove_suffix(1);
    after.remove_suffix(1);
  }
  return before;
}

void checkSettings(const std::string& content, const std::string& section, const std::string& key,
                   const std::string& value) {
  const auto before = settingOf(content, "MAIN", "MainWidth");
  require(before.has_value() == (content.find('\0') == std::string::npos), "every text is read");
  if (!before) return;
  const std::string changed = withSetting(content, "QXImportJob", section, key, value);
  require(settingOf(changed, section, key) == value, "a value is read as it was written");
  require(withSetting(changed, "QXImportJob", section, key, value) == changed,
          "a value that is written again changes nothing");
  require(replacedPart(content, changed).find('\n') == std::string_view::npos, "one line changes at most");
  const auto lower = [](std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return text;
  };
  if (lower(section) != "main" || lower(key) != "mainwidth")
    require(settingOf(changed, "MAIN", "MainWidth") == before, "the other values stay");
}

/// Without the sign that would end it, and what the format drops.
std::string part(std::string_view text, std::string_view without) {
  std::string plain;
  for (const char c : text)
    if (static_cast<unsigned char>(c) > ' ' && static_cast<unsigned char>(c) < 0x7F &&
        without.find(c) == std::string_view::npos)
      plain += c;
  return plain;
}

void checkProfile(const std::string& content, const std::string& section, const std::string& key,
                  const std::string& value) {
  const std::string read = profileValue(content, section, key);
  require(read.find('\n') == std::string::npos, "a value has one line");
  require(profileValue("; a comment\r\n" + content, section, key) == read ||
              content.starts_with("\xEF\xBB\xBF"),
          "a comment makes no difference");
  const std::string plainSection = part(section, "]");
  const std::string plainKey = "k" + part(key, "=");
  const std::string plainValue = part(value, "\"'");
  require(profileValue("[" + plainSection + "]\r\n " + plainKey + " = \"" + plainValue + "\"\r\n" + content,
                       plainSection, plainKey) == plainValue,
          "the first value of a key counts");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string section = take(input);
  const std::string key = take(input);
  const std::string value = take(input);
  const std::string content(input);
  require(decodeSetting(encodeSetting(value)) == value, "every text is kept in its written form");
  checkSettings(content, section, key, value);
  checkProfile(content, section, key, value);
  return 0;
}
