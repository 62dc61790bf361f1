// Windows around a form, and the access keys of their buttons.
#pragma once

#include "ui/qt/window_memory.h"

#include <QDialog>
#include <QString>

#include <string_view>

class QLabel;
class QPushButton;
class QScrollArea;

namespace qx {

class ControlForm;
class Form;

/// Marks in each caption the first letter that is still free.
class AccessKeys {
public:
  /// Reserves the key marked in a caption.
  void take(std::string_view caption);
  /// The caption with its key marked, or unmarked when every letter is taken. An existing mark is kept, so
  /// that a button has the same key everywhere.
  QString mark(const QString& caption);

private:
  QString taken_;
};

/// A dialog with the controls of a form, which scroll, and a line for a notice. Enter presses the button that
/// has the focus and otherwise leaves the field. The window's size is stored under `memoryKey`.
class FormWindow : public QDialog {
public:
  /// `boxTitle` is the title of the box with a picture's message. The references must outlive the window.
  FormWindow(QWidget* parent, Environment& environment, Form& form, std::string_view boxTitle,
             std::string_view memoryKey);
  void done(int result) override;

protected:
  void keyPressEvent(QKeyEvent* event) override;
  /// A button, with a key of its own, that Enter does not press from within a field.
  QPushButton* button(const QString& caption, const QString& name);

  AccessKeys keys_; ///< those of the form are taken
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
