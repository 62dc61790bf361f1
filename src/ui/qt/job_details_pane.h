// The pane below the job list.
#pragma once

#include <QPlainTextEdit>
#include <QWidget>

namespace qx {

/// Shows the reasons of a job's state, line by line, for reading and copying.
class JobDetailsPane final : public QWidget {
public:
  explicit JobDetailsPane(QWidget* parent);

  /// Keeps selection and scroll position while the text stays the same.
  void setText(const QString& text);

private:
  QPlainTextEdit* text_;
};

} // namespace qx
