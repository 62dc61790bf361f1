#include "adapters/local_settings/ini_text.h"

#include "adapters/local_settings/setting_text.h"

// All texts are UTF-8 on both sides.
#define SI_NO_CONVERSION
#include <SimpleIni.h>
#include <algorithm>
#include <stdexcept>

namespace qx {
namespace {

std::string sectionName(std::string_view application, std::string_view section) {
  return encodeSetting(application) + "/" + encodeSetting(section);
}

/// An empty key becomes "%", which no encoded key is.
std::string keyName(std::string_view key) { return key.empty() ? "%" : encodeSetting(key); }

void check(SI_Error result) {
  if (result < 0) throw std::runtime_error("the local settings cannot be held in memory");
}

/// Duplicate keys and keys without a value are not ours, but must survive.
void load(CSimpleIniA& ini, const std::string& content) {
  if (content.find('\0') != std::string::npos)
    throw std::runtime_error("the local settings file is no text file");
  ini.SetUnicode(true);
  ini.SetMultiKey(true);
  ini.SetAllowKeyOnly(true);
  check(ini.LoadData(content));
}

/// Where the comments and blank lines after the last entry begin, which the library would drop.
std::size_t endOfEntries(std::string_view content) {
  std::size_t end = 0;
  for (std::size_t at = 0; at < content.size();) {
    const std::size_t next = std::min(content.find('\n', at), content.size() - 1) + 1;
    const std::string_view line = content.substr(at, next - at);
    const auto first = line.find_first_not_of(" \t\r\n");
    if (first != std::string_view::npos && line[first] != ';' && line[first] != '#') end = next;
    at = next;
  }
  return end;
}

} // namespace

std::string settingIn(const std::string& content, std::string_view application, std::string_view section,
                      std::string_view key) {
  CSimpleIniA ini;
  load(ini, content);
  return decodeSetting(ini.GetValue(sectionName(application, section).c_str(), keyName(key).c_str(), ""));
}

std::string withSetting(std::string_view content, std::string_view application, std::string_view section,
                        std::string_view key, std::string_view value) {
  const std::size_t end = endOfEntries(content);
  CSimpleIniA ini;
  load(ini, std::string(content.substr(0, end)));
  check(ini.SetValue(sectionName(application, section).c_str(), keyName(key).c_str(),
                     encodeSetting(value).c_str(), nullptr, true));
  std::string entries;
  check(ini.Save(entries));
  const std::string comments(content.substr(end));
  // A file of comments alone is a heading.
  return end == 0 && !comments.empty() ? comments + "\n" + entries : entries + comments;
}

} // namespace qx
