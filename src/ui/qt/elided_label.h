// A line of text that gives way.
#pragma once

#include <QLabel>

namespace qx {

/// Shows as much of its text as there is room for; the whole text is the tool tip when it is cut.
class ElidedLabel final : public QLabel {
public:
  explicit ElidedLabel(QWidget* parent = nullptr);
  QSize minimumSizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;

private:
  QString cut() const;
};

} // namespace qx
