#include "ui/qt/form_window.h"

#include "ui/qt/access_keys.h"
#include "ui/qt/control_form.h"
#include "ui/qt/text.h"
#include "ui/qt/window_memory.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
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
  bool leadToRefused();

  WindowMemory memory_;
  Form& controls_;
  ControlForm* form_;
  QLabel* notice_;
};

FormWindow::FormWindow(QWidget* parent, Environment& environment, Form& form, const QString& title,
                       std::string_view memoryKey)
    : QDialog(parent), memory_(environment, memoryKey), controls_(form),
      form_(new ControlForm(form, environment.desktop, fromQt(title))), notice_(new QLabel(this)) {
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
  notice_->setObjectName(QStringLiteral("lblHinweis"));
  notice_->setTextFormat(Qt::PlainText);
  notice_->setWordWrap(true);
  notice_->hide();
  connect(form_, &ControlForm::edited, notice_,
          [this] { notice_->setVisible(controls_.refused().has_value()); });
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(scroll, 1);
  layout->addWidget(notice_);
  layout->addLayout(row);
  memory_.restore(*this, nullptr, form_->sizeHint() + QSize(48, fontMetrics().lineSpacing() * 5));
}

void FormWindow::done(int result) {
  form_->commit();
  // Typed text would be lost with the window.
  if (leadToRefused()) return;
  memory_.keep(*this, nullptr);
  QDialog::done(result);
}

/// Sets the focus to a control whose text was refused. False when there is none.
bool FormWindow::leadToRefused() {
  const auto index = controls_.refused();
  if (!index) return false;
  form_->focusControl(controls_.specs()[*index]->name);
  notice_->setText(
      toQt(controls_.control(*index).message) +
      QStringLiteral(" Bitte berichtigen Sie das Feld, oder verwerfen Sie die Eingabe mit Esc."));
  notice_->show();
  return true;
}

void FormWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    form_->commit();
    if (const auto index = controls_.refused()) {
      controls_.dropRefused(*index);
      form_->render();
      notice_->setVisible(leadToRefused());
      return;
    }
  }
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
