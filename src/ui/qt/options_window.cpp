#include "ui/qt/options_window.h"

#include "ui/qt/text.h"
#include "ui/qt/window_memory.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace qx {
namespace {

/// Screen readers read the hint after the caption.
void describe(QWidget& control, const OptionSpec& option) {
  control.setObjectName(toQt(option.control));
  control.setToolTip(toQt(option.german));
  control.setAccessibleDescription(toQt(option.german));
}

Qt::CheckState stateOf(const OptionField& field) {
  if (field.value.empty()) return Qt::PartiallyChecked;
  return field.checked() ? Qt::Checked : Qt::Unchecked;
}

} // namespace

OptionsWindow::OptionsWindow(Environment& environment, QWidget* parent, WaitFactory wait)
    : QDialog(parent), wait_(std::move(wait)), dialog_(environment), tabs_(new QTabWidget(this)) {
  setObjectName(QStringLiteral("frmOptions"));
  setWindowTitle(QStringLiteral("Optionen"));
  dialog_.load();

  tabs_->setObjectName(QStringLiteral("TabControll"));
  tabs_->addTab(makePage(false), QStringLiteral("Allgemein"));
  if (dialog_.customerSpecific()) tabs_->addTab(makePage(true), QStringLiteral("Kundenspezifische &Werte"));

  auto* const ok = new QPushButton(QStringLiteral("OK"));
  ok->setObjectName(QStringLiteral("cmdOK"));
  ok->setDefault(true);
  connect(ok, &QPushButton::clicked, this, &OptionsWindow::accept);
  auto* const cancel = new QPushButton(QStringLiteral("Abbrechen"));
  cancel->setObjectName(QStringLiteral("cmdCancel"));
  connect(cancel, &QPushButton::clicked, this, &OptionsWindow::reject);
  auto* const buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(ok);
  buttons->addWidget(cancel);

  auto* const layout = new QVBoxLayout(this);
  if (const std::string notice = dialog_.notice(); !notice.empty()) {
    auto* const label = new QLabel(toQt(notice));
    label->setObjectName(QStringLiteral("lblInfo"));
    label->setWordWrap(true);
    layout->addWidget(label);
  }
  layout->addWidget(tabs_);
  layout->addLayout(buttons);
  QSize pages(0, 0);
  for (const QScrollArea* const scroll : findChildren<QScrollArea*>())
    pages = pages.expandedTo(scroll->widget()->sizeHint());
  const int line = fontMetrics().lineSpacing();
  resize((pages + QSize(3 * line, 7 * line)).boundedTo(roomFor(*this, *screen())));
}

QWidget* OptionsWindow::makePage(bool customerSpecific) {
  auto* const page = new QWidget;
  auto* const columns = new QHBoxLayout(page);
  auto* const left = new QVBoxLayout;
  auto* const right = new QVBoxLayout;
  columns->addLayout(left);
  columns->addLayout(right);
  const auto belongs = [&](const OptionGroup& group) { return group.customerSpecific == customerSpecific; };
  // Column by column, so that the tab key goes down the left one first.
  auto leftOnes = (std::count_if(optionGroups().begin(), optionGroups().end(), belongs) + 1) / 2;
  for (const OptionGroup& group : optionGroups())
    if (belongs(group)) (leftOnes-- > 0 ? left : right)->addWidget(makeGroup(group));
  left->addStretch();
  right->addStretch();
  auto* const scroll = new QScrollArea;
  scroll->setWidget(page);
  scroll->setWidgetResizable(true);
  scroll->setFrameShape(QFrame::NoFrame);
  return scroll;
}

QWidget* OptionsWindow::makeGroup(const OptionGroup& group) {
  auto* const box = new QGroupBox(toQt(group.caption));
  auto* const layout = new QFormLayout(box);
  for (const OptionSpec* const option : group.options) {
    const OptionField* const field = dialog_.field(option->control);
    if (field == nullptr) continue;
    if (field->isCheck())
      addCheck(*option, *field, *layout);
    else
      addText(*option, *field, *layout);
  }
  return box;
}

void OptionsWindow::addCheck(const OptionSpec& option, const OptionField& field, QFormLayout& layout) {
  auto* const box = new QCheckBox(toQt(option.caption));
  describe(*box, option);
  box->setTristate(option.threeStates);
  box->setCheckState(stateOf(field));
  box->setEnabled(field.enabled);
  connect(box, &QCheckBox::clicked, this, [this, box, control = option.control] {
    if (box->checkState() == Qt::PartiallyChecked)
      dialog_.unset(control);
    else
      dialog_.check(control, box->isChecked());
    render();
  });
  checks_.push_back(box);
  layout.addRow(box);
}

void OptionsWindow::addText(const OptionSpec& option, const OptionField& field, QFormLayout& layout) {
  auto* const edit = new QLineEdit(toQt(field.value));
  describe(*edit, option);
  edit->setEnabled(field.enabled);
  connect(edit, &QLineEdit::textChanged, this,
          [this, control = option.control](const QString& typed) { dialog_.type(control, fromQt(typed)); });
  layout.addRow(toQt(option.caption), edit);
}

void OptionsWindow::render() {
  for (QCheckBox* const box : checks_) {
    const OptionField* const field = dialog_.field(fromQt(box->objectName()));
    box->setCheckState(stateOf(*field));
    box->setEnabled(field->enabled);
  }
}

void OptionsWindow::showWrongControl() {
  auto* const edit = findChild<QLineEdit*>(toQt(dialog_.wrongControl()));
  if (edit == nullptr) return;
  for (int page = 0; page < tabs_->count(); ++page)
    if (tabs_->widget(page)->isAncestorOf(edit)) tabs_->setCurrentIndex(page);
  edit->setFocus();
  edit->selectAll();
}

void OptionsWindow::reject() {
  dialog_.cancel();
  QDialog::reject();
}

void OptionsWindow::accept() {
  const auto wait = makeWait(wait_);
  if (dialog_.close(wait.get()))
    QDialog::accept();
  else
    showWrongControl();
}

void OptionsWindow::closeEvent(QCloseEvent* event) {
  // The toolkit would call `reject` here, which is Escape.
  accept();
  event->setAccepted(!isVisible());
}

} // namespace qx
