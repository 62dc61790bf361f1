// A line of text that shrinks with its window.
#pragma once

#include <QLabel>

namespace qx {

/// Shows as much of its text as fits; when cut, the whole text is the tool tip.
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
