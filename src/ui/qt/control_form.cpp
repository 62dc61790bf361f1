#include "ui/qt/control_form.h"

#include "engine/findings.h"
#include "model/date.h"
#include "ui/qt/access_keys.h"
#include "ui/qt/code_combo.h"
#include "ui/qt/elided_label.h"
#include "ui/qt/pictures.h"
#include "ui/qt/text.h"

#include <QApplication>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QEvent>
#include <QFocusEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QStyle>
#include <QToolButton>

#include <algorithm>
#include <utility>

namespace qx {
namespace {

constexpr int mostColumns = 3;
constexpr int masterLength = 38; ///< characters of a stored value on its button

QString accessible(std::string_view caption) { return toQt(caption).remove(QLatin1Char('&')); }

/// `toPlainText` would turn non-breaking blanks into common ones.
QString noteText(const QPlainTextEdit& note) {
  QString text = note.document()->toRawText();
  for (const QChar end : {QChar(QChar::ParagraphSeparator), QChar(QChar::LineSeparator)})
    text.replace(end, QLatin1Char('\n'));
  return text;
}

/// A button that looks as if it could be clicked, without a frame of its own.
void dressAsLink(QToolButton& button) {
  QFont font = button.font();
  font.setUnderline(true);
  button.setFont(font);
  QPalette colours = button.palette();
  colours.setColor(QPalette::ButtonText, colours.color(QPalette::Link));
  button.setPalette(colours);
  button.setCursor(Qt::PointingHandCursor);
}

QToolButton* flatButton(QWidget* parent) {
  auto* button = new QToolButton(parent);
  button->setAutoRaise(true);
  return button;
}

} // namespace

ControlForm::ControlForm(Form& form, Desktop& desktop, std::string_view boxTitle, AccessKeys& keys)
    : form_(form), desktop_(desktop), boxTitle_(boxTitle), fields_(form.specs().size()),
      columns_(new QHBoxLayout(this)) {
  for (const ControlGroup& group : form_.groups()) buildGroup(group);
  captionFields(keys);
  arrange(std::min<int>(mostColumns, static_cast<int>(groups_.size())));
  render();
}

/// Keys that are marked in a caption come before those that are found.
void ControlForm::captionFields(AccessKeys& keys) {
  for (const bool marked : {true, false})
    for (std::size_t index = 0; index < fields_.size(); ++index) {
      const QString caption = toQt(form_.specs()[index]->caption);
      if (caption.contains(QLatin1Char('&')) != marked) continue;
      const Field& field = fields_[index];
      if (field.caption != nullptr)
        field.caption->setText(keys.mark(caption));
      else if (auto* check = qobject_cast<QCheckBox*>(field.editor))
        check->setText(keys.mark(caption));
      else if (auto* box = qobject_cast<QGroupBox*>(field.editor->parentWidget()))
        box->setTitle(keys.mark(caption));
    }
}

void ControlForm::buildGroup(const ControlGroup& group) {
  std::vector<std::size_t> indexes;
  for (const ControlSpec& spec : group.controls)
    if (const auto index = form_.find(spec.name)) indexes.push_back(*index);
  if (indexes.empty()) {
    // Kept so that groups have the form's indexes.
    groups_.emplace_back();
    return;
  }
  // A field that fills its group has the group's heading as its caption.
  const ControlSpec& first = *form_.specs()[indexes.front()];
  const bool alone = indexes.size() == 1 && accessible(first.caption) == toQt(group.caption);
  auto* box = new QGroupBox(toQt(group.caption), this);
  auto* rows = new QGridLayout(box);
  rows->setVerticalSpacing(std::max(2, rows->verticalSpacing() / 2));
  rows->setColumnStretch(1, 1);
  int weight = 2;
  for (const std::size_t index : indexes) {
    buildField(*rows, index, alone);
    weight += form_.specs()[index]->kind == ControlKind::Note ? 3 : 1;
    if (!form_.specs()[index]->description.empty()) ++weight;
  }
  groups_.push_back({box, rows, std::move(indexes), weight});
}

void ControlForm::buildField(QGridLayout& rows, std::size_t index, bool alone) {
  const ControlSpec& spec = *form_.specs()[index];
  Field& field = fields_[index];
  QWidget* box = rows.parentWidget();
  const int row = rows.rowCount();
  field.editor = makeEditor(index);
  field.editor->setObjectName(toQt(spec.name));
  field.editor->setAccessibleName(accessible(spec.caption));
  field.editor->installEventFilter(this);

  auto* line = new QHBoxLayout;
  line->setSpacing(2);
  line->addWidget(field.editor, 1);
  if (spec.kind == ControlKind::Date) {
    field.calendar = flatButton(box);
    field.calendar->setObjectName(toQt(spec.name) + QStringLiteral("Kalender"));
    field.calendar->setArrowType(Qt::DownArrow);
    field.calendar->setFocusPolicy(Qt::NoFocus);
    field.calendar->setAccessibleName(accessible(spec.caption) + QStringLiteral(" im Kalender wählen"));
    field.calendar->setToolTip(QStringLiteral("Im Kalender wählen (F4)"));
    connect(field.calendar, &QToolButton::clicked, this, [this, index] { openCalendar(index); });
    line->addWidget(field.calendar);
  }
  if (!spec.lookup.empty()) {
    field.lookup = new QToolButton(box);
    field.lookup->setObjectName(toQt(spec.button));
    field.lookup->setText(QStringLiteral("…"));
    // F4 does the same, so the button needs no tab stop.
    field.lookup->setFocusPolicy(Qt::NoFocus);
    field.lookup->setAccessibleName(toQt(spec.lookup) + QStringLiteral(" zu ") + accessible(spec.caption));
    field.lookup->setToolTip(toQt(spec.lookup) + QStringLiteral(" (F4)"));
    connect(field.lookup, &QToolButton::clicked, this, [this, index] { lookUp(index); });
    line->addWidget(field.lookup);
  }
  if (!spec.description.empty()) {
    field.description = new ElidedLabel(box);
    field.description->setObjectName(toQt(spec.description));
    // Below the field: beside it, names would be cut.
    rows.addWidget(field.description, row + 1, 1, 1, 2);
  }

  field.picture = flatButton(box);
  if (!spec.picture.empty()) field.picture->setObjectName(toQt(spec.picture));
  field.picture->setFocusPolicy(Qt::TabFocus);
  QSizePolicy kept = field.picture->sizePolicy();
  kept.setRetainSizeWhenHidden(true);
  field.picture->setSizePolicy(kept);
  connect(field.picture, &QToolButton::clicked, this, [this, index] { showMessage(index); });

  field.master = flatButton(box);
  field.master->setObjectName(toQt(spec.name) + QStringLiteral("Stamm"));
  field.master->setFocusPolicy(Qt::TabFocus);
  dressAsLink(*field.master);
  connect(field.master, &QToolButton::clicked, this, [this, index] { takeMaster(index); });

  if (spec.kind == ControlKind::Check || alone) {
    rows.addLayout(line, row, 0, 1, 2);
  } else {
    field.caption = new QLabel(box);
    field.caption->setBuddy(field.editor);
    rows.addWidget(field.caption, row, 0, spec.kind == ControlKind::Note ? Qt::AlignTop : Qt::AlignVCenter);
    rows.addLayout(line, row, 1);
  }
  rows.addWidget(field.picture, row, 2, Qt::AlignVCenter);
  rows.addWidget(field.master, row + 2, 1, 1, 2, Qt::AlignLeft);
}

QWidget* ControlForm::makeEditor(std::size_t index) {
  const ControlSpec& spec = *form_.specs()[index];
  switch (spec.kind) {
  case ControlKind::Note: {
    auto* note = new QPlainTextEdit(this);
    note->setTabChangesFocus(true);
    note->setMinimumHeight(note->fontMetrics().lineSpacing() * 3 + 12);
    note->setMaximumHeight(note->fontMetrics().lineSpacing() * 5 + 12);
    note->setMinimumWidth(note->fontMetrics().averageCharWidth() * 12);
    return note;
  }
  case ControlKind::Combo:
  case ControlKind::List: {
    auto* combo = new CodeCombo(spec.kind == ControlKind::Combo, this);
    connect(combo, &QComboBox::activated, this, [this, index] { commitField(index); });
    return combo;
  }
  case ControlKind::Check: {
    auto* check = new QCheckBox(toQt(spec.caption), this);
    connect(check, &QCheckBox::clicked, this, [this, index] { commitField(index); });
    return check;
  }
  case ControlKind::Text:
  case ControlKind::Number:
  case ControlKind::Money:
  case ControlKind::Date:
    break;
  }
  auto* line = new QLineEdit(this);
  line->setMinimumWidth(line->fontMetrics().averageCharWidth() * 10);
  // A text that is not a number or date is kept as typed: the form says what is wrong.
  if (isNumeric(spec.kind)) line->setAlignment(Qt::AlignRight);
  if (spec.kind == ControlKind::Date) line->setPlaceholderText(QStringLiteral("tt.mm.jjjj"));
  return line;
}

/// Each group is added to the shortest column, so that the order runs from left to right. The tab key goes
/// down one column after the other.
void ControlForm::arrange(int columns) {
  if (columns == columnCount_) return;
  columnCount_ = columns;
  while (QLayoutItem* column = columns_->takeAt(0)) {
    while (QLayoutItem* item = column->layout()->takeAt(0)) delete item;
    delete column;
  }
  std::vector<QVBoxLayout*> stacks;
  std::vector<int> heights(static_cast<std::size_t>(columns), 0);
  std::vector<std::vector<std::size_t>> fields(static_cast<std::size_t>(columns));
  for (int i = 0; i < columns; ++i) {
    stacks.push_back(new QVBoxLayout);
    columns_->addLayout(stacks.back(), 1);
  }
  for (const Group& group : groups_) {
    if (group.box == nullptr) continue;
    const auto shortest =
        static_cast<std::size_t>(std::min_element(heights.begin(), heights.end()) - heights.begin());
    stacks[shortest]->addWidget(group.box);
    heights[shortest] += group.weight;
    fields[shortest].insert(fields[shortest].end(), group.fields.begin(), group.fields.end());
  }
  for (QVBoxLayout* stack : stacks) stack->addStretch(1);
  orderTabs(fields);
}

void ControlForm::fitWidth(int width) {
  int widest = 1;
  int shown = 0;
  for (const Group& group : groups_) {
    if (group.box == nullptr) continue;
    widest = std::max(widest, group.box->minimumSizeHint().width());
    ++shown;
  }
  const QMargins margins = columns_->contentsMargins();
  const int room = width - margins.left() - margins.right() + columns_->spacing();
  arrange(std::clamp(room / (widest + columns_->spacing()), 1, std::min(mostColumns, std::max(shown, 1))));
}

void ControlForm::orderTabs(const std::vector<std::vector<std::size_t>>& columns) {
  QWidget* before = nullptr;
  const auto next = [&](QWidget* widget) {
    if (before != nullptr) QWidget::setTabOrder(before, widget);
    before = widget;
  };
  for (const auto& column : columns)
    for (const std::size_t index : column) {
      next(fields_[index].editor);
      next(fields_[index].picture);
      next(fields_[index].master);
    }
}

QString ControlForm::content(std::size_t index) const {
  QWidget* editor = fields_[index].editor;
  switch (form_.specs()[index]->kind) {
  case ControlKind::Note:
    return noteText(*static_cast<QPlainTextEdit*>(editor));
  case ControlKind::Combo:
  case ControlKind::List:
    return toQt(static_cast<CodeCombo*>(editor)->code());
  case ControlKind::Check:
    return static_cast<QCheckBox*>(editor)->isChecked() ? QStringLiteral("1") : QStringLiteral("0");
  case ControlKind::Text:
  case ControlKind::Number:
  case ControlKind::Money:
  case ControlKind::Date:
    break;
  }
  return static_cast<QLineEdit*>(editor)->text();
}

std::string ControlForm::typed(std::size_t index) const {
  QString text = content(index);
  // Staged texts have CR LF as line ends unless this one came with others.
  const std::string& before = form_.control(index).text;
  const bool bare = before.find('\n') != std::string::npos && before.find("\r\n") == std::string::npos;
  if (form_.specs()[index]->kind == ControlKind::Note && !bare)
    text.replace(QLatin1Char('\n'), QStringLiteral("\r\n"));
  return fromQt(text);
}

void ControlForm::render() {
  for (std::size_t index = 0; index < fields_.size(); ++index) show(index);
}

void ControlForm::show(std::size_t index) {
  const ControlState& state = form_.control(index);
  Field& field = fields_[index];
  showEnabled(*field.editor, state.enabled);
  if (!pending(index) || field.shown.isNull()) showEditor(index);
  if (field.calendar != nullptr) field.calendar->setEnabled(state.enabled);
  if (field.lookup != nullptr) field.lookup->setEnabled(state.enabled);
  if (field.description != nullptr) field.description->setText(toQt(state.description));

  const QString message = toQt(state.message);
  field.picture->setVisible(state.picture != CheckStatus::Clean);
  field.picture->setIcon(fieldPicture(state.picture));
  field.picture->setToolTip(plainToolTip(message));
  field.picture->setAccessibleName(toQt(severityWord(state.picture)) + QStringLiteral(": ") + message);

  field.master->setVisible(state.master.has_value() && state.enabled);
  if (state.master) {
    const QString value = state.master->empty() ? QStringLiteral("(leer)") : toQt(*state.master).simplified();
    const bool cut = value.size() > masterLength;
    field.master->setText(QStringLiteral("Stamm: ") +
                          plainCaption(cut ? value.left(masterLength) + QStringLiteral("…") : value));
    field.master->setToolTip(
        plainToolTip(QStringLiteral("Den Wert der Stammdaten übernehmen (F6 im Feld): ") + value));
  }
}

void ControlForm::showEditor(std::size_t index) {
  const ControlState& state = form_.control(index);
  QWidget* editor = fields_[index].editor;
  const QSignalBlocker quiet(editor);
  switch (form_.specs()[index]->kind) {
  case ControlKind::Note: {
    auto* note = static_cast<QPlainTextEdit*>(editor);
    QString text = toQt(state.text);
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    if (noteText(*note) != text) note->setPlainText(text);
    break;
  }
  case ControlKind::Combo:
  case ControlKind::List: {
    auto* combo = static_cast<CodeCombo*>(editor);
    combo->offer(form_.content(index));
    if (combo->code() != state.text || combo->currentIndex() < 0) combo->showCode(state.text);
    break;
  }
  case ControlKind::Check:
    static_cast<QCheckBox*>(editor)->setChecked(state.text == "1");
    break;
  case ControlKind::Text:
  case ControlKind::Number:
  case ControlKind::Money:
  case ControlKind::Date: {
    auto* line = static_cast<QLineEdit*>(editor);
    const QString text = toQt(state.text);
    if (line->text() == text) break;
    line->setText(text);
    if (!line->hasFocus()) line->setCursorPosition(0);
    break;
  }
  }
  fields_[index].shown = content(index);
  if (fields_[index].shown.isNull()) fields_[index].shown = QLatin1String("");
}

/// A read-only control is drawn flat; its text can be read and copied.
void ControlForm::showEnabled(QWidget& editor, bool enabled) {
  if (auto* line = qobject_cast<QLineEdit*>(&editor))
    line->setReadOnly(!enabled);
  else if (auto* note = qobject_cast<QPlainTextEdit*>(&editor))
    note->setReadOnly(!enabled);
  else
    editor.setEnabled(enabled);
  QPalette look;
  if (!enabled) {
    const QPalette own = palette();
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
      look.setColor(group, QPalette::Base, own.color(QPalette::Active, QPalette::Window));
      look.setColor(group, QPalette::Button, own.color(QPalette::Active, QPalette::Window));
      for (const auto role : {QPalette::Text, QPalette::ButtonText, QPalette::WindowText})
        look.setColor(group, role, own.color(QPalette::Active, QPalette::WindowText));
    }
  }
  editor.setPalette(look);
}

void ControlForm::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange)
    for (std::size_t index = 0; index < fields_.size(); ++index)
      if (fields_[index].editor != nullptr) showEnabled(*fields_[index].editor, form_.control(index).enabled);
}

void ControlForm::commitField(std::size_t index) {
  if (!pending(index)) return;
  if (auto* combo = dynamic_cast<CodeCombo*>(fields_[index].editor)) combo->complete();
  form_.type(index, typed(index));
  fields_[index].shown = content(index);
  form_.leave(index);
  render();
  emit edited();
}

void ControlForm::commit() {
  for (std::size_t index = 0; index < fields_.size(); ++index) commitField(index);
}

void ControlForm::lookUp(std::size_t index) {
  if (!form_.control(index).enabled) return;
  commit();
  const bool taken = form_.lookUp(index);
  fields_[index].editor->setFocus(Qt::OtherFocusReason);
  render();
  if (auto* line = qobject_cast<QLineEdit*>(fields_[index].editor); taken && line != nullptr)
    line->selectAll();
  emit edited();
}

void ControlForm::takeMaster(std::size_t index) {
  // Before its button is hidden, which would move the focus.
  fields_[index].editor->setFocus(Qt::OtherFocusReason);
  commit();
  form_.takeMaster(index);
  render();
  emit edited();
}

bool ControlForm::takeCurrentMaster() {
  const QWidget* focused = QApplication::focusWidget();
  for (std::size_t index = 0; index < fields_.size(); ++index) {
    QWidget* editor = fields_[index].editor;
    if (editor != focused && !editor->isAncestorOf(focused)) continue;
    if (!form_.control(index).master || !form_.control(index).enabled) return false;
    takeMaster(index);
    return true;
  }
  return false;
}

void ControlForm::takeMasters() {
  commit();
  form_.takeMasters();
  render();
  emit edited();
}

void ControlForm::showMessage(std::size_t index) {
  desktop_.show({form_.control(index).message, boxTitle_, MessageIcon::Critical});
}

void ControlForm::openCalendar(std::size_t index) {
  auto* line = static_cast<QLineEdit*>(fields_[index].editor);
  auto* popup = new QFrame(this, Qt::Popup);
  popup->setAttribute(Qt::WA_DeleteOnClose);
  popup->setFrameShape(QFrame::StyledPanel);
  auto* layout = new QVBoxLayout(popup);
  layout->setContentsMargins(0, 0, 0, 0);
  auto* calendar = new QCalendarWidget(popup);
  calendar->setFirstDayOfWeek(Qt::Monday);
  layout->addWidget(calendar);
  if (const auto date = parseGermanDate(fromQt(line->text())))
    calendar->setSelectedDate(QDate(static_cast<int>(date->year()),
                                    static_cast<int>(static_cast<unsigned>(date->month())),
                                    static_cast<int>(static_cast<unsigned>(date->day()))));
  const auto choose = [this, index, line, popup](const QDate& day) {
    popup->close();
    line->setText(day.toString(QStringLiteral("dd.MM.yyyy")));
    line->setFocus(Qt::OtherFocusReason);
    commitField(index);
  };
  connect(calendar, &QCalendarWidget::activated, this, choose);
  connect(calendar, &QCalendarWidget::clicked, this, choose);
  popup->move(line->mapToGlobal(QPoint(0, line->height())));
  popup->show();
  calendar->setFocus(Qt::PopupFocusReason);
}

bool ControlForm::focusControl(std::string_view name) {
  const auto index = form_.find(name);
  if (!index) return false;
  QWidget* editor = fields_[*index].editor;
  editor->setFocus(Qt::ShortcutFocusReason);
  if (auto* line = qobject_cast<QLineEdit*>(editor)) line->selectAll();
  return true;
}

void ControlForm::addBelow(std::size_t group, QWidget* widget) {
  QGridLayout* rows = groups_.at(group).rows;
  rows->addWidget(widget, rows->rowCount(), 0, 1, 3);
}

bool ControlForm::eventFilter(QObject* watched, QEvent* event) {
  const auto found = std::find_if(fields_.begin(), fields_.end(),
                                  [&](const Field& field) { return field.editor == watched; });
  if (found == fields_.end()) return QWidget::eventFilter(watched, event);
  const auto index = static_cast<std::size_t>(found - fields_.begin());
  switch (event->type()) {
  case QEvent::FocusOut: {
    const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    // A menu, a drop-down list or another program takes the focus without the clerk leaving the field.
    if (reason == Qt::PopupFocusReason || reason == Qt::ActiveWindowFocusReason) break;
    // The editor handles the event first, since it may complete its text.
    watched->event(event);
    commitField(index);
    return true;
  }
  case QEvent::KeyPress:
    if (static_cast<QKeyEvent*>(event)->key() != Qt::Key_F4) break;
    if (found->lookup != nullptr) {
      lookUp(index);
      return true;
    }
    if (found->calendar != nullptr && found->calendar->isEnabled()) {
      openCalendar(index);
      return true;
    }
    break;
  case QEvent::Wheel:
    // Scrolling the form must not change the selection of a list.
    if (qobject_cast<QComboBox*>(watched) == nullptr) break;
    event->ignore();
    return true;
  default:
    break;
  }
  return QWidget::eventFilter(watched, event);
}

} // namespace qx
