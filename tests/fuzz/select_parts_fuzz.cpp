// Any text as a statement: what is split joins to the statement again.
#include "adapters/sql/merged_select.h"
#include "adapters/sql/select_parts.h"

#include "model/text.h"
#include "require.h"

#include <cstdint>
#include <string>

using namespace qx::relational;
using qx::require;

namespace {

/// Follows the pieces through the statement: between two of them stand blanks and the keywords only.
class Walk {
public:
  explicit Walk(std::string_view statement) : rest_(statement) {}

  void keyword(std::string_view word) {
    blanks();
    require(qx::equalCodes(rest_.substr(0, word.size()), word), "the keyword stands before its clause");
    rest_.remove_prefix(word.size());
  }
  void clause(std::string_view text) {
    blanks();
    require(rest_.data() == text.data(), "the clauses leave nothing out");
    require(rest_.size() >= text.size(), "a clause is part of the statement");
    rest_.remove_prefix(text.size());
  }
  /// A name with or without the signs around it.
  void name(std::string_view text) {
    blanks();
    const char open = rest_.empty() ? '\0' : rest_.front();
    const bool quoted = open == '[' || open == '"';
    if (quoted) rest_.remove_prefix(1);
    require(rest_.starts_with(text), "the table stands behind its keyword");
    rest_.remove_prefix(text.size());
    if (!quoted) return;
    require(rest_.starts_with(open == '[' ? ']' : '"'), "the signs around a name come in pairs");
    rest_.remove_prefix(1);
  }
  void end() {
    blanks();
    require(rest_.empty(), "nothing stands behind the last clause");
  }

private:
  void blanks() {
    while (!rest_.empty() && std::string_view(" \r\n\t").find(rest_.front()) != std::string_view::npos)
      rest_.remove_prefix(1);
  }

  std::string_view rest_;
};

void checkJoined(std::string_view statement, const SelectParts& parts) {
  Walk walk(statement);
  walk.keyword("select");
  walk.clause(parts.list);
  walk.keyword("from");
  walk.name(parts.table);
  if (!parts.where.empty()) {
    walk.keyword("where");
    walk.clause(parts.where);
  }
  if (!parts.orderBy.empty()) {
    walk.keyword("order");
    walk.keyword("by");
    walk.clause(parts.orderBy);
  }
  walk.end();
}

std::string joined(const SelectParts& parts) {
  std::string text = "SELECT " + std::string(parts.list) + " FROM [" + std::string(parts.table) + "]";
  if (!parts.where.empty()) text.append("WHERE ").append(parts.where);
  if (!parts.orderBy.empty()) text.append(" ORDER BY ").append(parts.orderBy);
  return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string statement(reinterpret_cast<const char*>(data), size);
  const auto merged = mergedSelect(statement, "10", sqliteDialect);
  require(merged.has_value() == mergedSelect(statement, "10", postgresDialect).has_value(),
          "the same statements are merged for every database");
  const auto parts = splitSelect(statement);
  require(parts || !merged, "what cannot be split is not merged");
  if (!parts) return 0;
  checkJoined(statement, *parts);
  const std::string again = joined(*parts);
  const auto second = splitSelect(again);
  require(second && second->list == parts->list && second->table == parts->table &&
              second->where == parts->where && second->orderBy == parts->orderBy &&
              second->aggregate == parts->aggregate && second->descending() == parts->descending(),
          "clauses that are joined split into the same");
  if (!merged) return 0;
  require(!parts->aggregate && !parts->orderBy.empty(), "only sorted rows are merged");
  require(merged == mergedSelect(again, "10", sqliteDialect), "the same clauses are merged the same");
  require(merged->starts_with("SELECT " + std::string(parts->list) + " FROM ("), "the list stays");
  return 0;
}
