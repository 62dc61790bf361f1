#include "ui/qt/form_window.h"

#include "ui/qt/access_keys.h"
#include "ui/qt/control_form.h"
#include "ui/qt/text.h"
#include "ui/qt/window_memory.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace qx {
namespace {

class FormWindow final : public QDialog {
public:
  FormWindow(QWidget* parent, Environment& environment, Form& form, const QString& title,
             std::string_view memoryKey);
  void done(int result) override;

protected:
  void keyPressEvent(QKeyEvent* event) override;

private:
  WindowMemory memory_;
  ControlForm* form_;
};

FormWindow::FormWindow(QWidget* parent, Environment& environment, Form& form, const QString& title,
                       std::string_view memoryKey)
    : QDialog(parent), memory_(environment, memoryKey),
      form_(new ControlForm(form, environment.desktop, fromQt(title))) {
  setObjectName(QStringLiteral("frmAngaben"));
  setWindowTitle(title);
  auto* scroll = new QScrollArea(this);
  scroll->setWidgetResizable(true);
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->setWidget(form_);
  AccessKeys keys;
  for (const ControlSpec* spec : form.specs()) keys.take(spec->caption);
  auto* close = new QPushButton(keys.mark(QStringLiteral("Schließen")), this);
  close->setObjectName(QStringLiteral("cmdClose"));
  close->setAutoDefault(false);
  connect(close, &QPushButton::clicked, this, &FormWindow::accept);
  auto* row = new QHBoxLayout;
  row->addStretch(1);
  row->addWidget(close);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(scroll, 1);
  layout->addLayout(row);
  memory_.restore(*this, nullptr, form_->sizeHint() + QSize(48, fontMetrics().lineSpacing() * 5));
}

void FormWindow::done(int result) {
  form_->commit();
  memory_.keep(*this, nullptr);
  QDialog::done(result);
}

void FormWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
    QDialog::keyPressEvent(event);
  else if (auto* button = qobject_cast<QPushButton*>(focusWidget()))
    button->click();
  else
    form_->commit();
}

} // namespace

void showForm(QWidget* parent, Environment& environment, Form& form, const QString& title,
              std::string_view memoryKey) {
  FormWindow(parent, environment, form, title, memoryKey).exec();
}

} // namespace qx
