// A set of controls and their state, without a toolkit.
#pragma once

#include "ui/control.h"

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// Groups of controls with one value each.
///
/// The window calls a member for each action of the clerk and then shows the state again.
class Form {
public:
  Form() = default;
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;
  virtual ~Form() = default;

  /// The groups from left to right, top to bottom.
  virtual std::span<const ControlGroup> groups() const = 0;

  /// The controls that are shown, in the order of the groups. A control is known by its index here.
  const std::vector<const ControlSpec*>& specs() const { return specs_; }
  /// The index of a control; null when there is none of this name.
  std::optional<std::size_t> find(std::string_view name) const;
  const ControlState& control(std::size_t index) const { return controls_[index]; }
  /// The items of a combo or list.
  const ComboContent& content(std::size_t index) const { return contents_[index]; }
  /// Whether nothing may be changed.
  bool readOnly() const { return readOnly_; }
  /// Whether it differs from what was last loaded or saved.
  virtual bool changed() const;

  /// The clerk has typed or chosen; nothing is checked yet. In a combo both a code and a shown text select a
  /// row.
  virtual void type(std::size_t index, std::string_view text);
  /// The clerk leaves the control: its checks run again.
  virtual void leave(std::size_t index) = 0;
  /// The index of a control whose text was refused; null when there is none.
  virtual std::optional<std::size_t> refused() const { return std::nullopt; }
  /// Restores the value of such a control.
  virtual void dropRefused(std::size_t /*index*/) {}
  /// Opens the control's lookup and stores the chosen value. False when nothing was chosen.
  virtual bool lookUp(std::size_t index) = 0;
  /// Sets the control to the stored value from which it differs. False when there is none.
  bool takeMaster(std::size_t index);
  /// The number of controls that differ from a stored value.
  std::size_t mastersLeft() const;
  /// Sets all of them to it.
  void takeMasters();

protected:
  /// Shows the controls of the groups; those of the customer-specific mode only in it.
  void build(bool customerSpecific);
  ControlState& at(std::string_view name);
  bool has(std::string_view name) const { return find(name).has_value(); }
  /// The value of a control; "" for one that is not shown.
  std::string text(std::string_view name) const;
  ComboContent& contentOf(std::string_view name);
  /// Sets fixed items, each a text and a code, and selects that of the control's value. False when there is
  /// none.
  bool offer(std::string_view name, std::vector<std::array<std::string, 2>> items);
  /// Selects the row of the control's value. False when there is none.
  bool select(std::string_view name);
  /// Shows a picture with its message beside the control; clean clears it.
  void mark(std::string_view name, CheckStatus severity, std::string message = {});
  /// Marks the current values as saved.
  void markSaved();
  /// The text of a control as last loaded or saved.
  const std::string& storedText(std::size_t index) const { return stored_[index]; }
  void setReadOnly(bool readOnly);

private:
  std::vector<const ControlSpec*> specs_;
  std::vector<ControlState> controls_;
  std::vector<ComboContent> contents_;
  std::vector<std::string> stored_;
  bool readOnly_ = false;
};

/// Fills a combo of a form from the engine's lists.
class ComboFiller final : public ComboTarget {
public:
  explicit ComboFiller(ComboContent& content) : content_(content) { content_ = {}; }
  void setRowSource(ComboRows rows) override;
  void hideColumn(int index) override { content_.hiddenColumn = index; }
  void setColumnHeaders(bool /*shown*/) override {}
  void setBookmark(std::size_t row) override { content_.selected = row; }

private:
  ComboContent& content_;
};

} // namespace qx
