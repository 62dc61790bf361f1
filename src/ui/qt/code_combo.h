// A drop-down list of codes and their texts.
#pragma once

#include "ui/control.h"

#include <QComboBox>

#include <string>
#include <string_view>

class QStandardItemModel;

namespace qx {

/// Drops down in two columns, of which the closed field shows one. An editable one also accepts other texts
/// and offers the rows whose text or code contains the typed characters.
class CodeCombo final : public QComboBox {
public:
  explicit CodeCombo(bool editable, QWidget* parent = nullptr);

  /// Shows these rows; does nothing when they are already shown.
  void offer(const ComboContent& content);
  /// Shows the row of a code, or the code itself when no row has it.
  void showCode(std::string_view code);
  /// The code of the chosen row, or the typed text.
  std::string code() const;

  /// Chooses the row that a typed text means: the only one whose text or code contains it. Codes and texts
  /// that are complete mean themselves.
  void complete();

  void showPopup() override;

private:
  QStandardItemModel* rows_;
  ComboRows offered_;
  bool filled_ = false;
};

} // namespace qx
