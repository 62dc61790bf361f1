// What a map says: how a file is written, and what its columns mean.
#pragma once

#include "convert/csv_rows.h"
#include "convert/job_properties.h"
#include "convert/value_forms.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qx::convert {

/// A column, by its heading or, in a file without headings, by its number.
struct MappedColumn {
  std::string name;
  std::int64_t line = 0; ///< in the map
};

/// What one property is made of: a column or a constant.
struct MappedProperty {
  JobProperty property;
  std::optional<MappedColumn> column;
  std::string constant; ///< as JSON
  std::map<std::string, std::string>
      values;                  ///< what stands in the column, and the JSON it becomes; may be empty
  std::int64_t valuesLine = 0; ///< in the map; 0 without a table of values
};

struct ColumnMap {
  std::string file; ///< the map's name, for messages
  JobKind kind = JobKind::Kunde;
  CsvForm form;
  ValueForms values;
  std::size_t columns = 0; ///< of a file without headings; 0 for one with them
  std::optional<MappedColumn> group;
  std::vector<MappedProperty> properties; ///< in the order of the map
};

/// The properties that a job of the kind cannot do without, as maps spell them.
std::vector<std::string> requiredOf(JobKind kind);
/// The properties of which a job of the kind needs one; empty for none.
std::span<const std::string_view> namesOf(JobKind kind);

/// Whether a value, as JSON, is none at all or an empty text.
bool isEmptyLiteral(std::string_view literal);

} // namespace qx::convert
