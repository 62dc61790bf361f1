#include "ui/form.h"

#include "model/text.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace qx {
namespace {

/// The first row with this text in the column; an exact match precedes one in another case.
std::optional<std::size_t> rowWith(const ComboContent& content, std::size_t column, std::string_view text) {
  std::optional<std::size_t> found;
  for (std::size_t row = 0; row < content.rows.rows.size(); ++row) {
    const std::string& offered = content.rows.rows[row][column];
    if (offered == text) return row;
    if (!found && equalCodes(offered, text)) found = row;
  }
  return found;
}

/// The code of the row that a typed text means; otherwise the text itself.
std::string codeOf(const ComboContent& content, std::string_view typed) {
  const auto code = static_cast<std::size_t>(content.codeColumn);
  for (const std::size_t column : {code, 1 - code})
    if (const auto row = rowWith(content, column, typed)) return content.rows.rows[*row][code];
  return std::string(typed);
}

std::optional<std::size_t> rowOf(const ComboContent& content, std::string_view code) {
  return rowWith(content, static_cast<std::size_t>(content.codeColumn), code);
}

} // namespace

std::optional<std::size_t> Form::find(std::string_view name) const {
  for (std::size_t index = 0; index < specs_.size(); ++index)
    if (specs_[index]->name == name) return index;
  return std::nullopt;
}

bool Form::changed() const {
  for (std::size_t index = 0; index < controls_.size(); ++index)
    if (!specs_[index]->displayOnly && controls_[index].text != stored_[index]) return true;
  return false;
}

void Form::type(std::size_t index, std::string_view text) {
  if (readOnly_ || !controls_[index].enabled) return;
  const ControlKind kind = specs_[index]->kind;
  if (kind != ControlKind::Combo && kind != ControlKind::List) {
    // Blanks around a number or code come from typing and pasting and are never intended.
    controls_[index].text = kind == ControlKind::Note ? text : trimBlanks(text);
    return;
  }
  ComboContent& content = contents_[index];
  controls_[index].text = codeOf(content, trimBlanks(text));
  content.selected = rowOf(content, controls_[index].text);
}

bool Form::takeMaster(std::size_t index) {
  if (!controls_[index].master || !controls_[index].enabled) return false;
  type(index, std::string(*controls_[index].master));
  leave(index);
  return true;
}

std::size_t Form::mastersLeft() const {
  return static_cast<std::size_t>(std::ranges::count_if(
      controls_, [](const ControlState& control) { return control.master.has_value() && control.enabled; }));
}

void Form::takeMasters() {
  for (std::size_t index = 0; index < controls_.size(); ++index) takeMaster(index);
}

void Form::build(bool customerSpecific) {
  specs_.clear();
  for (const ControlGroup& group : groups())
    for (const ControlSpec& spec : group.controls)
      if (customerSpecific || !spec.customerSpecific) specs_.push_back(&spec);
  controls_.assign(specs_.size(), {});
  contents_.assign(specs_.size(), {});
  stored_.assign(specs_.size(), {});
}

ControlState& Form::at(std::string_view name) {
  const auto index = find(name);
  if (!index) throw std::logic_error("no control " + std::string(name));
  return controls_[*index];
}

std::string Form::text(std::string_view name) const {
  const auto index = find(name);
  return index ? controls_[*index].text : std::string();
}

ComboContent& Form::contentOf(std::string_view name) {
  const auto index = find(name);
  if (!index) throw std::logic_error("no control " + std::string(name));
  return contents_[*index];
}

bool Form::offer(std::string_view name, std::vector<std::array<std::string, 2>> items) {
  ComboContent& content = contentOf(name);
  content = {};
  content.hiddenColumn = 1;
  content.rows.rows = std::move(items);
  return select(name);
}

bool Form::select(std::string_view name) {
  ComboContent& content = contentOf(name);
  content.selected = rowOf(content, text(name));
  return content.selected.has_value();
}

void Form::mark(std::string_view name, CheckStatus severity, std::string message) {
  const auto index = find(name);
  if (!index) return;
  controls_[*index].picture = severity;
  controls_[*index].message = severity == CheckStatus::Clean ? std::string() : std::move(message);
}

void Form::markSaved() {
  for (std::size_t index = 0; index < controls_.size(); ++index) stored_[index] = controls_[index].text;
}

void Form::setReadOnly(bool readOnly) {
  readOnly_ = readOnly;
  for (std::size_t index = 0; index < controls_.size(); ++index)
    controls_[index].enabled = !readOnly && !specs_[index]->displayOnly;
}

void ComboFiller::setRowSource(ComboRows rows) {
  content_.rows = std::move(rows);
  content_.selected.reset();
}

} // namespace qx
