#include "convert/map_reader.h"

#include "model/text.h"
#include "program/program_error.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <span>
#include <string_view>
#include <utility>

namespace qx::convert {
namespace {

constexpr std::string_view fileSection = "file";
constexpr std::string_view columnsSection = "columns";
constexpr std::string_view constantsSection = "constants";
constexpr std::string_view valuesSection = "values ";

template <class Meaning>
struct Word {
  std::string_view word;
  Meaning meaning;
};

constexpr auto delimiters =
    std::to_array<Word<char>>({{"semicolon", ';'}, {"comma", ','}, {"tab", '\t'}, {"pipe", '|'}});
constexpr auto quotes = std::to_array<Word<char>>({{"double", '"'}, {"single", '\''}, {"none", '\0'}});
constexpr auto encodings =
    std::to_array<Word<Encoding>>({{"UTF-8", Encoding::Utf8}, {"windows-1252", Encoding::Windows1252}});
constexpr auto headers = std::to_array<Word<bool>>({{"yes", true}, {"no", false}});
constexpr auto decimals = std::to_array<Word<char>>({{"comma", ','}, {"point", '.'}});
constexpr auto thousands = std::to_array<Word<char>>(
    {{"none", '\0'}, {"point", '.'}, {"comma", ','}, {"blank", ' '}, {"apostrophe", '\''}});
constexpr auto kinds = std::to_array<Word<JobKind>>(
    {{"Kunde", JobKind::Kunde}, {"Vertrag", JobKind::Vertrag}, {"Auftrag", JobKind::Auftrag}});

constexpr auto keysOfFile = std::to_array<std::string_view>(
    {"kind", "delimiter", "quote", "encoding", "header", "columns", "decimal", "thousands", "date", "group"});

std::string listOf(std::span<const std::string_view> words) {
  std::string list;
  for (std::size_t i = 0; i < words.size(); ++i)
    list.append(i == 0 ? "" : i + 1 == words.size() ? " or " : ", ").append(words[i]);
  return list;
}

class MapReader {
public:
  MapReader(const std::vector<MapEntry>& entries, const std::string& file) : entries_(entries) {
    map_.file = file;
  }

  ColumnMap read() {
    requireSections();
    readForm();
    for (const MapEntry& entry : entries_) {
      if (entry.section == columnsSection) addColumn(entry);
      if (entry.section == constantsSection) addConstant(entry);
    }
    for (const MapEntry& entry : entries_)
      if (entry.section.starts_with(valuesSection)) addValue(entry);
    requireProperties();
    return std::move(map_);
  }

private:
  [[noreturn]] void refuse(std::int64_t line, std::string_view key, const std::string& reason) const {
    // Without a line the place would not be told.
    throw ProgramError(ExitCode::BadInput, line == 0 ? map_.file + ": " + reason : reason,
                       "Nothing was converted. docs/convert.md describes maps.",
                       {map_.file, line, std::string(key)});
  }

  void requireSections() const {
    for (const MapEntry& entry : entries_) {
      const bool known = entry.section == fileSection || entry.section == columnsSection ||
                         entry.section == constantsSection || entry.section.starts_with(valuesSection);
      if (!known)
        refuse(entry.line, entry.key,
               "there is no section [" + entry.section +
                   "]; those of a map are [file], [columns], [constants] and [values PROPERTY]");
      if (entry.section == fileSection && std::ranges::find(keysOfFile, entry.key) == keysOfFile.end())
        refuse(entry.line, entry.key,
               "[file] has no key '" + entry.key + "'; its keys are " + listOf(keysOfFile));
    }
  }

  void requireProperties() {
    for (const std::string& name : requiredOf(map_.kind))
      if (!givesValue(name)) refuseLack("the property " + name, "name its column in [columns]");
    const auto names = namesOf(map_.kind);
    if (!names.empty() && std::ranges::none_of(names, [&](auto name) { return givesValue(name); }))
      refuseLack("a name", "give " + listOf(names) + " a column in [columns]");
  }

  /// Whether a column or a constant can be the value of the property.
  bool givesValue(std::string_view name) {
    const MappedProperty* const mapped = find(propertyNamed(name));
    return mapped != nullptr && (mapped->column || !isEmptyLiteral(mapped->constant));
  }

  [[noreturn]] void refuseLack(const std::string& what, const std::string& remedy) const {
    refuse(0, {},
           "the map lacks " + what + ", which a job of the kind " + std::string(nameOf(map_.kind)) +
               " needs: " + remedy);
  }

  const MapEntry* entryOf(std::string_view key) const {
    const auto found = std::ranges::find_if(
        entries_, [&](const MapEntry& entry) { return entry.section == fileSection && entry.key == key; });
    return found == entries_.end() ? nullptr : &*found;
  }

  const MapEntry& required(std::string_view key, std::string_view accepted) const {
    if (const MapEntry* entry = entryOf(key)) return *entry;
    refuse(0, key, "the key '" + std::string(key) + "' is missing in [file]: " + std::string(accepted));
  }

  static std::string_view textOf(const MapEntry& entry) { return trimBlanks(entry.text); }

  template <class Words>
  auto choose(std::string_view key, const Words& words) const {
    std::vector<std::string_view> names;
    names.reserve(words.size());
    for (const auto& word : words) names.push_back(word.word);
    const std::string accepted = listOf(names);
    const MapEntry& entry = required(key, accepted);
    for (const auto& word : words)
      if (word.word == textOf(entry)) return word.meaning;
    refuse(entry.line, entry.key, "'" + std::string(textOf(entry)) + "' is not " + accepted);
  }

  void readForm() {
    map_.kind = choose("kind", kinds);
    map_.form = {choose("delimiter", delimiters), choose("quote", quotes), choose("encoding", encodings)};
    readHeader();
    map_.values.decimal = choose("decimal", decimals);
    map_.values.thousands = choose("thousands", thousands);
    if (map_.values.thousands == map_.values.decimal) {
      const MapEntry& entry = required("thousands", {});
      refuse(entry.line, entry.key, "decimals and thousands cannot have the same sign");
    }
    const MapEntry& date = required("date", "a pattern like dd.mm.yyyy");
    map_.values.date = textOf(date);
    if (const auto fault = faultOfDatePattern(map_.values.date)) refuse(date.line, date.key, *fault);
    const MapEntry& group =
        required("group", "the column whose value is the same in all lines of a job, or none");
    if (textOf(group) == "none") return;
    if (map_.kind == JobKind::Kunde)
      refuse(group.line, group.key, "a job of the kind Kunde has no positions; its group is none");
    map_.group = columnOf(group);
  }

  void readHeader() {
    const bool header = choose("header", headers);
    const MapEntry* columns = entryOf("columns");
    if (header) {
      if (columns != nullptr)
        refuse(columns->line, columns->key, "the headings of the file say how many columns there are");
      return;
    }
    const MapEntry& entry = required("columns", "how many columns a file without headings has");
    const auto count = wholeOf(textOf(entry));
    if (!count)
      refuse(entry.line, entry.key, "'" + std::string(textOf(entry)) + "' is not a number of columns");
    map_.columns = *count;
  }

  static std::optional<std::size_t> wholeOf(std::string_view text) {
    std::size_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stopped != end || number == 0) return std::nullopt;
    return number;
  }

  MappedColumn columnOf(const MapEntry& entry) const {
    const std::string name(textOf(entry));
    if (name.empty()) refuse(entry.line, entry.key, "the name of a column is missing");
    if (map_.columns == 0) return {name, entry.line};
    const auto number = wholeOf(name);
    if (!number || *number > map_.columns)
      refuse(entry.line, entry.key,
             "'" + name + "' is not the number of a column, 1 to " + std::to_string(map_.columns));
    return {name, entry.line};
  }

  JobProperty propertyNamed(std::string_view name, std::int64_t line = 0) const {
    if (const auto property = propertyOf(map_.kind, name)) return *property;
    refuse(line, name,
           "a job of the kind " + std::string(nameOf(map_.kind)) + " has no property '" + std::string(name) +
               "'; docs/cli.md lists them");
  }

  MappedProperty* find(const JobProperty& property) {
    const auto found = std::ranges::find_if(
        map_.properties, [&](const MappedProperty& mapped) { return mapped.property.isSame(property); });
    return found == map_.properties.end() ? nullptr : &*found;
  }

  MappedProperty& added(const MapEntry& entry) {
    const JobProperty property = propertyNamed(entry.key, entry.line);
    if (find(property) != nullptr)
      refuse(entry.line, entry.key, "the property " + entry.key + " has a column and a constant");
    return map_.properties.emplace_back(MappedProperty{property, std::nullopt, {}, {}, 0});
  }

  void addColumn(const MapEntry& entry) { added(entry).column = columnOf(entry); }

  void addConstant(const MapEntry& entry) {
    MappedProperty& mapped = added(entry);
    mapped.constant = literalOf(entry, mapped.property);
  }

  void addValue(const MapEntry& entry) {
    const std::string name(trimBlanks(std::string_view(entry.section).substr(valuesSection.size())));
    MappedProperty* mapped = find(propertyNamed(name, entry.line));
    if (mapped == nullptr || !mapped->column)
      refuse(entry.line, entry.key,
             "[" + entry.section + "] is for a property that has a column in [columns]");
    if (mapped->valuesLine == 0) mapped->valuesLine = entry.line;
    mapped->values.emplace(entry.key, literalOf(entry, mapped->property));
  }

  /// The value that a map sets, in the form of a file of jobs.
  std::string literalOf(const MapEntry& entry, const JobProperty& property) const {
    const std::string_view text = textOf(entry);
    std::string literal;
    // Marks of a date are no dates.
    const bool asText =
        property.kind == FieldKind::Text || (property.kind == FieldKind::Date && text == "999999");
    if (asText) {
      appendText(literal, text);
    } else if (text.empty()) {
      refuse(entry.line, entry.key, "a value is missing");
    } else if (const auto wrong = appendValue(literal, text, property.kind, jobFileForms())) {
      refuse(entry.line, entry.key, "'" + std::string(text) + "' " + *wrong);
    }
    return literal;
  }

  const std::vector<MapEntry>& entries_;
  ColumnMap map_;
};

} // namespace

ColumnMap readMap(const std::vector<MapEntry>& entries, const std::string& file) {
  return MapReader(entries, file).read();
}

} // namespace qx::convert
