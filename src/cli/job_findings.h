// The findings of a job's check, one text each.
#pragma once

#include "engine/findings.h"

#include <string>
#include <vector>

namespace qx::cli {

/// Without the line breaks that end each finding.
inline std::vector<std::string> findingTexts(const Findings& findings) {
  std::vector<std::string> texts;
  std::string_view rest = findings.text;
  while (!rest.empty()) {
    const auto end = rest.find("\r\n");
    if (end != 0) texts.emplace_back(rest.substr(0, end));
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 2);
  }
  return texts;
}

} // namespace qx::cli
