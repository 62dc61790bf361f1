// Names as the catalogue spells them, for databases that report them in lower case.
#pragma once

#include "model/text.h"

#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

namespace qx::relational {

/// Knows the names of columns.
class Spelling {
public:
  /// Knows none: names stay as the database reports them.
  Spelling() = default;
  /// The names live as long as the spelling.
  explicit Spelling(std::span<const std::string_view> names) {
    for (const std::string_view name : names) names_.emplace(asciiLower(name), name);
  }

  /// The name as spelled, or the reported one when it is unknown.
  std::string_view of(std::string_view reported) const {
    const auto found = names_.find(asciiLower(reported));
    return found == names_.end() ? reported : found->second;
  }

private:
  std::unordered_map<std::string, std::string_view> names_;
};

} // namespace qx::relational
