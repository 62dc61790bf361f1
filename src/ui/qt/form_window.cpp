#include "ui/qt/form_window.h"

#include "ui/qt/control_form.h"
#include "ui/qt/text.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace qx {
namespace {

/// Closes only when every typed text was accepted or discarded.
class DetailsWindow final : public FormWindow {
public:
  DetailsWindow(QWidget* parent, Environment& environment, Form& form, const QString& title,
                std::string_view memoryKey)
      : FormWindow(parent, environment, form, fromQt(title), memoryKey, {"S&chließen"}), controls_(form) {
    setObjectName(QStringLiteral("frmAngaben"));
    setWindowTitle(title);
    QPushButton* close = button(QStringLiteral("S&chließen"), QStringLiteral("cmdClose"));
    connect(close, &QPushButton::clicked, this, &DetailsWindow::accept);
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(close);
    notice_->hide();
    connect(form_, &ControlForm::edited, notice_,
            [this] { notice_->setVisible(controls_.refused().has_value()); });
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(scroll_, 1);
    layout->addWidget(notice_);
    layout->addLayout(row);
    memory_.restore(*this, nullptr, form_->sizeHint() + QSize(48, fontMetrics().lineSpacing() * 5));
  }

  void done(int result) override {
    form_->commit();
    // Typed text would be lost with the window.
    if (!leadToRefused()) FormWindow::done(result);
  }

protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Escape) {
      form_->commit();
      if (const auto index = controls_.refused()) {
        controls_.dropRefused(*index);
        form_->render();
        notice_->setVisible(leadToRefused());
        return;
      }
    }
    FormWindow::keyPressEvent(event);
  }

private:
  /// Sets the focus to a control whose text was refused. False when there is none.
  bool leadToRefused() {
    const auto index = controls_.refused();
    if (!index) return false;
    form_->focusControl(controls_.specs()[*index]->name);
    notice_->setText(
        toQt(controls_.control(*index).message) +
        QStringLiteral(" Bitte berichtigen Sie das Feld, oder verwerfen Sie die Eingabe mit Esc."));
    notice_->show();
    return true;
  }

  Form& controls_;
};

} // namespace

FormWindow::FormWindow(QWidget* parent, Environment& environment, Form& form, std::string_view boxTitle,
                       std::string_view memoryKey, const std::vector<std::string_view>& reserved)
    : QDialog(parent), memory_(environment, memoryKey),
      form_(new ControlForm(form, environment.desktop, boxTitle,
                            [&]() -> AccessKeys& {
                              for (const std::string_view caption : reserved) keys_.take(caption);
                              return keys_;
                            }())),
      scroll_(new QScrollArea(this)), notice_(new QLabel(this)) {
  scroll_->setWidgetResizable(true);
  scroll_->setFrameShape(QFrame::NoFrame);
  scroll_->setFocusPolicy(Qt::NoFocus);
  scroll_->setWidget(form_);
  notice_->setObjectName(QStringLiteral("lblHinweis"));
  notice_->setTextFormat(Qt::PlainText);
  notice_->setWordWrap(true);
}

QPushButton* FormWindow::button(const QString& caption, const QString& name) {
  auto* made = new QPushButton(caption.contains(QLatin1Char('&')) ? caption : keys_.mark(caption), this);
  made->setObjectName(name);
  made->setAutoDefault(false);
  return made;
}

void FormWindow::done(int result) {
  memory_.keep(*this, splitter_);
  QDialog::done(result);
}

void FormWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
    QDialog::keyPressEvent(event);
  else if (auto* pressed = qobject_cast<QPushButton*>(focusWidget()))
    pressed->click();
  else
    form_->commit();
}

void showForm(QWidget* parent, Environment& environment, Form& form, const QString& title,
              std::string_view memoryKey) {
  DetailsWindow(parent, environment, form, title, memoryKey).exec();
}

} // namespace qx
