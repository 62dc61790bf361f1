// Windows around a form.
#pragma once

#include "ui/qt/access_keys.h"
#include "ui/qt/window_memory.h"

#include <QDialog>
#include <QString>

#include <string_view>
#include <vector>

class QLabel;
class QPushButton;
class QScrollArea;

namespace qx {

class ControlForm;
class Form;

/// A dialog with the controls of a form, which scroll, and a line for a notice. Enter presses the button that
/// has the focus and otherwise leaves the field. The window's size is stored under `memoryKey`.
class FormWindow : public QDialog {
public:
  /// `boxTitle` is the title of the box with a picture's message. The keys marked in `reserved` are not given
  /// to fields. The references must outlive the window.
  FormWindow(QWidget* parent, Environment& environment, Form& form, std::string_view boxTitle,
             std::string_view memoryKey, const std::vector<std::string_view>& reserved);
  void done(int result) override;

protected:
  void keyPressEvent(QKeyEvent* event) override;
  /// A button that Enter does not press from within a field. A caption without a marked key gets one that is
  /// free.
  QPushButton* button(const QString& caption, const QString& name);

  AccessKeys keys_; ///< those reserved and those of the form are taken
  WindowMemory memory_;
  ControlForm* form_;
  QScrollArea* scroll_;
  QLabel* notice_;
  QSplitter* splitter_ = nullptr; ///< whose sections are stored with the size
};

/// Opens a form modally whose changes take effect as each field is left; returns when it is closed. The size
/// is stored under `memoryKey`.
void showForm(QWidget* parent, Environment& environment, Form& form, const QString& title,
              std::string_view memoryKey);

} // namespace qx
