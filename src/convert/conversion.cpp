#include "convert/conversion.h"

#include "model/key_length.h"
#include "model/text.h"
#include "program/program_error.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <unordered_set>
#include <utility>

namespace qx::convert {
namespace {

class Conversion {
public:
  Conversion(File& file, const std::string& fileName, const ColumnMap& map, std::ostream& jobs)
      : map_(map), rows_(file, map.form, fileName), jobs_(jobs),
        hasPositions_(std::ranges::any_of(
            map.properties, [](const MappedProperty& mapped) { return mapped.property.ofPosition; })),
        literals_(map.properties.size()), earlier_(map.properties.size()) {
    const auto named = [&](const auto& names, const MappedProperty& mapped) {
      return std::ranges::any_of(
          names, [&](std::string_view name) { return mapped.property.isSame(*propertyOf(map.kind, name)); });
    };
    const auto required = requiredOf(map.kind);
    for (const MappedProperty& mapped : map.properties) {
      if (named(namesOf(map.kind), mapped)) names_.push_back(required_.size());
      required_.push_back(named(required, mapped));
    }
  }

  ConversionCounts convert() {
    findColumns();
    jobs_ << "[";
    while (rows_.next()) {
      ++counts_.rows;
      takeRow();
    }
    endJob();
    jobs_ << "\n]\n";
    return counts_;
  }

private:
  /// The places of the map's columns in a row.
  void findColumns() {
    columns_ = map_.columns;
    std::vector<std::string> headings;
    if (map_.columns == 0) {
      if (!rows_.next()) rows_.refuse(1, {}, "the file is empty; a line of headings is expected");
      for (std::size_t i = 0; i < rows_.values().size(); ++i)
        headings.push_back(rows_.textOf(rows_.values()[i], std::to_string(i + 1)));
      columns_ = headings.size();
    }
    for (const MappedProperty& mapped : map_.properties)
      places_.push_back(mapped.column ? placeOf(*mapped.column, headings) : 0);
    if (map_.group) groupPlace_ = placeOf(*map_.group, headings);
  }

  std::size_t placeOf(const MappedColumn& column, const std::vector<std::string>& headings) const {
    std::size_t number = 0;
    if (headings.empty()) {
      std::from_chars(column.name.data(), column.name.data() + column.name.size(), number);
      return number - 1;
    }
    const auto found = std::ranges::find(headings, column.name);
    if (found == headings.end()) {
      std::string all;
      for (const std::string& heading : headings) all += (all.empty() ? "'" : ", '") + heading + "'";
      rows_.refuse(rows_.line(), column.name,
                   "the file has no such column, which line " + std::to_string(column.line) +
                       " of the map names; it has " + all);
    }
    if (std::find(found + 1, headings.end(), column.name) != headings.end())
      rows_.refuse(rows_.line(), column.name, "two columns have this heading");
    return static_cast<std::size_t>(found - headings.begin());
  }

  void takeRow() {
    const std::size_t count = rows_.values().size();
    if (count != columns_)
      rows_.refuse(rows_.line(), {},
                   "the row has " + std::to_string(count) + (count == 1 ? " column" : " columns") + ", " +
                       std::to_string(columns_) + " are expected");
    for (std::size_t i = 0; i < map_.properties.size(); ++i) read(i);
    requireName();
    if (continuesJob())
      requireSameHeader();
    else
      beginJob();
    if (hasPositions_) writePosition();
  }

  const std::string& columnName(std::size_t index) const { return map_.properties[index].column->name; }

  /// The value of one property in the row, as JSON; empty when there is none.
  void read(std::size_t index) {
    const MappedProperty& mapped = map_.properties[index];
    std::string& literal = literals_[index];
    literal.clear();
    if (!mapped.column) {
      literal = mapped.constant;
      return;
    }
    const CsvValue& cell = rows_.values()[places_[index]];
    const std::string text = rows_.textOf(cell, columnName(index));
    if (mapped.valuesLine != 0) {
      const auto found = mapped.values.find(text);
      if (found != mapped.values.end()) {
        literal = found->second;
      } else if (!text.empty()) {
        rows_.refuse(cell.line, columnName(index),
                     "'" + text + "' is not in the table of values on line " +
                         std::to_string(mapped.valuesLine) + " of the map");
      }
    } else if (!text.empty()) {
      if (const auto wrong = appendValue(literal, text, mapped.property.kind, map_.values))
        rows_.refuse(cell.line, columnName(index), "'" + text + "' " + *wrong);
      const bool key = mapped.property.name == "JobID" || mapped.property.name == "ChildID";
      if (key && characterCount(text) > longestKey)
        rows_.refuse(cell.line, columnName(index),
                     "'" + text + "' is longer than a key, which has 32 characters");
    }
    if (required_[index] && isEmptyLiteral(literal))
      rows_.refuse(cell.line, columnName(index),
                   "the value is empty, but a job needs the property " + std::string(mapped.property.name));
  }

  /// A customer has no name that would tell who it is.
  void requireName() const {
    if (names_.empty() ||
        std::ranges::any_of(names_, [&](std::size_t index) { return !isEmptyLiteral(literals_[index]); }))
      return;
    std::string columns;
    for (const std::size_t index : names_)
      if (map_.properties[index].column) columns += (columns.empty() ? "" : ", ") + columnName(index);
    rows_.refuse(rows_.line(), columns, "nothing stands there, but a job needs a name");
  }

  /// Whether the row belongs to the job of the row before.
  bool continuesJob() {
    if (!map_.group) return false;
    const CsvValue& cell = rows_.values()[groupPlace_];
    std::string group = rows_.textOf(cell, map_.group->name);
    if (group.empty())
      rows_.refuse(cell.line, map_.group->name, "the value is empty, but it groups the lines");
    if (open_ && group == group_) return true;
    if (!groups_.insert(textHash(group)).second)
      rows_.refuse(cell.line, map_.group->name,
                   "the lines of '" + group + "' are not all together; sort the file by this column");
    group_ = std::move(group);
    return false;
  }

  void requireSameHeader() const {
    for (std::size_t i = 0; i < literals_.size(); ++i) {
      const MappedProperty& mapped = map_.properties[i];
      if (mapped.property.ofPosition || literals_[i] == earlier_[i]) continue;
      rows_.refuse(rows_.values()[places_[i]].line, columnName(i),
                   "the value differs from that of line " + std::to_string(jobLine_) +
                       ", though both lines belong to '" + group_ + "'");
    }
  }

  void beginJob() {
    endJob();
    open_ = true;
    jobLine_ = rows_.line();
    jobs_ << (counts_.jobs++ == 0 ? "\n" : ",\n") << R"({"type":")" << nameOf(map_.kind) << '"';
    for (std::size_t i = 0; i < literals_.size(); ++i) {
      const JobProperty& property = map_.properties[i].property;
      if (property.ofPosition) continue;
      if (!literals_[i].empty()) jobs_ << ",\"" << property.name << "\":" << literals_[i];
      earlier_[i] = literals_[i];
    }
    if (hasPositions_) jobs_ << R"(,"Positionen":[)";
    firstPosition_ = true;
  }

  void writePosition() {
    jobs_ << (firstPosition_ ? "{" : ",{");
    firstPosition_ = false;
    const char* separator = "\"";
    for (std::size_t i = 0; i < literals_.size(); ++i) {
      const JobProperty& property = map_.properties[i].property;
      if (!property.ofPosition || literals_[i].empty()) continue;
      jobs_ << separator << property.name << "\":" << literals_[i];
      separator = ",\"";
    }
    jobs_ << '}';
  }

  void endJob() {
    if (open_) jobs_ << (hasPositions_ ? "]}" : "}");
  }

  const ColumnMap& map_;
  CsvRows rows_;
  std::ostream& jobs_;
  bool hasPositions_;
  std::size_t columns_ = 0;
  std::vector<std::size_t> places_; ///< of the columns of the properties
  std::size_t groupPlace_ = 0;
  std::vector<bool> required_;        ///< of the map's properties, those that may not be empty
  std::vector<std::size_t> names_;    ///< those of which one may not be empty
  std::vector<std::string> literals_; ///< of the row, in the order of the properties
  std::vector<std::string> earlier_;  ///< of the first row of the job
  std::string group_;
  std::unordered_set<std::uint64_t> groups_; ///< hashes of all that have begun
  std::int64_t jobLine_ = 0;
  bool open_ = false;
  bool firstPosition_ = true;
  ConversionCounts counts_;
};

} // namespace

ConversionCounts convertRows(File& file, const std::string& fileName, const ColumnMap& map,
                             std::ostream& jobs) {
  return Conversion(file, fileName, map, jobs).convert();
}

} // namespace qx::convert
