#include "ui/qt/job_details_pane.h"

#include <QLabel>
#include <QVBoxLayout>

namespace qx {

JobDetailsPane::JobDetailsPane(QWidget* parent) : QWidget(parent), text_(new QPlainTextEdit(this)) {
  text_->setObjectName(QStringLiteral("txtDetails"));
  text_->setAccessibleName(QStringLiteral("Befunde des Vorgangs"));
  text_->setReadOnly(true);
  // Readable by keyboard without capturing the Tab key.
  text_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  text_->setTabChangesFocus(true);
  auto* caption = new QLabel(QStringLiteral("Be&funde des Vorgangs"), this);
  caption->setBuddy(text_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  layout->addWidget(caption);
  layout->addWidget(text_);
}

void JobDetailsPane::setText(const QString& text) {
  if (text_->toPlainText() != text) text_->setPlainText(text);
}

} // namespace qx
