#include "ui/qt/busy_wait.h"

#include "platform/desktop.h"
#include "ui/qt/text.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace qx {
namespace {

/// A shorter wait needs no notice.
constexpr std::chrono::milliseconds cursorAfter{100};
constexpr std::chrono::milliseconds boxAfter{600};

} // namespace

QtBusyWait::QtBusyWait(QWidget* parent)
    : parent_(parent != nullptr ? parent : QApplication::activeWindow()) {}

QtBusyWait::~QtBusyWait() {
  if (cursor_) QApplication::restoreOverrideCursor();
}

bool QtBusyWait::goOn(std::chrono::milliseconds waited) {
  if (!cursor_ && waited >= cursorAfter) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    cursor_ = true;
  }
  if (!box_ && waited >= boxAfter) open();
  // Until the box is open, keys and clicks stay queued: the windows are not ready for them.
  QCoreApplication::processEvents(box_ ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents);
  return !givenUp_;
}

void QtBusyWait::open() {
  box_ = std::make_unique<QDialog>(parent_);
  box_->setObjectName(QStringLiteral("frmWarten"));
  box_->setWindowTitle(toQt(defaultTitle));
  box_->setWindowModality(Qt::ApplicationModal);
  auto* const text = new QLabel(
      QStringLiteral("Die Datenbank wird gerade von einem anderen Programm benutzt.\nEs geht weiter, sobald "
                     "sie frei ist."));
  text->setObjectName(QStringLiteral("lblWarten"));
  auto* const cancel = new QPushButton(QStringLiteral("Abb&rechen"));
  cancel->setObjectName(QStringLiteral("cmdCancel"));
  QObject::connect(cancel, &QPushButton::clicked, box_.get(), &QDialog::reject);
  // Escape and the close box cancel as the button does.
  QObject::connect(box_.get(), &QDialog::rejected, box_.get(), [this] { givenUp_ = true; });
  auto* const row = new QHBoxLayout;
  row->addStretch();
  row->addWidget(cancel);
  auto* const layout = new QVBoxLayout(box_.get());
  layout->addWidget(text);
  layout->addLayout(row);
  box_->show();
}

} // namespace qx
