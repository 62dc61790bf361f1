// Fills a record from the properties of one object of a file.
#pragma once

#include "cli/content_hash.h"
#include "cli/stage_value.h"
#include "cli/terminal_text.h"
#include "model/field_table.h"
#include "store/job_file_line.h"
#include "store/record_columns.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <vector>

namespace qx::cli {

/// Properties are found by name in the record's field table. An unknown or repeated property and one whose
/// value does not fit are refused with the reason.
template <const auto& table, class Record>
class ObjectBuilder {
public:
  explicit ObjectBuilder(Record initial) : initial_(std::move(initial)), record_(initial_) {}

  void begin() {
    record_ = initial_;
    textLength_ = 0;
    lines_.fill(0);
    sources_.fill(Source::None);
  }
  /// Null when the property was accepted, otherwise what is wrong. A null value counts as not given.
  std::optional<ValueFault> add(StageProperty& property, bool contract) {
    auto found = indexes().find(property.name);
    if (found == indexes().end()) found = indexes().find(composed(property.name));
    if (found == indexes().end()) return unknownProperty(property.name, names());
    std::int64_t& line = lines_[found->second];
    if (line != 0) return repeatedProperty(line);
    line = property.line;
    if (std::holds_alternative<std::monostate>(property.value)) return std::nullopt;
    sources_[found->second] = Source::Object;
    if (const auto* text = std::get_if<std::string>(&property.value)) textLength_ += jobFileLength(*text);
    if (textLength_ > longestTexts)
      return ValueFault{
          FaultKind::TooLong, "with this text the object is longer than a job file can carry (16 MiB)", {}};
    const auto& field = table[found->second];
    const DateRule rule{contract, contract && field.name == "Vertragsende"};
    return field.visit(record_,
                       [&](auto& member) { return assign(property.value, member, field.kind, rule); });
  }

  Record& record() { return record_; }
  /// The line of a property, or 0 when it was not given.
  std::int64_t line(std::string_view name) const { return lines_[fieldIndex(table, name)]; }

  /// Whether the object gives the property a value; null is none.
  bool given(std::string_view name) const { return isGiven(fieldIndex(table, name)); }
  /// Whether the property has no value, or is an empty text.
  bool lacks(std::string_view name) const {
    const std::size_t index = fieldIndex(table, name);
    return !isGiven(index) || table[index].visit(record_, [](const auto& member) {
      if constexpr (std::is_same_v<std::decay_t<decltype(member)>, std::string>) return member.empty();
      return false;
    });
  }
  /// Sets a property that the object does not give, as follows from its other properties.
  template <class Member, class Owner>
  void derive(std::string_view name, Member Owner::*member, Member derived) {
    if (given(name)) return;
    record_.*member = derived;
    sources_[fieldIndex(table, name)] = Source::Object;
  }
  /// Marks a property that has a value of the installation when the object does not give one.
  void preset(std::string_view name) {
    Source& source = sources_[fieldIndex(table, name)];
    if (source == Source::None) source = Source::Installation;
  }

  /// Adds what the object gives, and what follows from it, in the order of the table: not the keys, nor what
  /// only the program sets.
  void addTo(ContentHash& content) const {
    for (std::size_t i = 0; i < table.size(); ++i)
      if (sources_[i] == Source::Object && isContent[i])
        table[i].visit(record_, [&](const auto& member) {
          if constexpr (std::is_arithmetic_v<std::decay_t<decltype(member)>>)
            content.add(contentNames[i], static_cast<double>(member));
          else
            content.add(contentNames[i], std::string_view(member));
        });
  }

  /// The columns of the properties that have no value.
  const std::vector<ColumnName>& unspoken() {
    unspoken_.clear();
    for (std::size_t i = 0; i < table.size(); ++i)
      if (sources_[i] == Source::None && table[i].stored() && table[i].visit(record_, [](const auto& member) {
            return member == std::decay_t<decltype(member)>();
          }))
        unspoken_.push_back(detail::columns<table>[i]);
    return unspoken_;
  }

private:
  /// The maximum total length of an object's texts; the rest of a record is for numbers and delimiters.
  static constexpr std::size_t longestTexts = longestRecord - std::size_t{4} * 1024;

  /// Where the value of a property comes from.
  enum class Source : std::uint8_t { None, Object, Installation };

  static constexpr std::array<bool, table.size()> isContent = [] {
    std::array<bool, table.size()> is{};
    for (std::size_t i = 0; i < table.size(); ++i)
      is[i] = table[i].name != "JobID" && table[i].name != "ChildID" && table[i].name != "JobType" &&
              table[i].name != "Status" && table[i].name != "Fehlertext";
    return is;
  }();

  static constexpr std::array<ContentHash::Name, table.size()> contentNames = [] {
    std::array<ContentHash::Name, table.size()> names;
    for (std::size_t i = 0; i < table.size(); ++i) names[i] = ContentHash::Name(table[i].name);
    return names;
  }();

  bool isGiven(std::size_t index) const { return sources_[index] == Source::Object; }

  using Indexes = std::unordered_map<std::string_view, std::size_t>;

  static const Indexes& indexes() {
    static const Indexes known = [] {
      Indexes all;
      for (std::size_t i = 0; i < table.size(); ++i) all.emplace(table[i].name, i);
      return all;
    }();
    return known;
  }

  static std::vector<std::string> names() {
    std::vector<std::string> all;
    for (const auto& field : table) all.emplace_back(field.name);
    return all;
  }

  Record initial_;
  Record record_;
  std::array<std::int64_t, table.size()> lines_{};
  std::array<Source, table.size()> sources_{};
  std::vector<ColumnName> unspoken_;
  std::size_t textLength_ = 0;
};

} // namespace qx::cli
