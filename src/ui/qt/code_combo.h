// A drop-down list of codes and their texts.
#pragma once

#include "ui/control.h"

#include <QComboBox>

#include <string>
#include <string_view>

class QStandardItemModel;

namespace qx {

/// Drops down in two columns, of which the closed field shows one. An editable one takes other texts, too,
/// and offers what contains the typed characters, be it the text or the code.
class CodeCombo final : public QComboBox {
public:
  explicit CodeCombo(bool editable, QWidget* parent = nullptr);

  /// Shows these rows; nothing happens when they are shown already.
  void offer(const ComboContent& content);
  /// Shows the row of a code, or the code itself when no row has it.
  void showCode(std::string_view code);
  /// The code of the chosen row, or what was typed instead.
  std::string code() const;

  void showPopup() override;

private:
  QStandardItemModel* rows_;
  ComboRows offered_;
  bool filled_ = false;
};

} // namespace qx
