#include "ui/qt/grid_delegate.h"

#include "ui/qt/code_combo.h"
#include "ui/qt/text.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPlainTextEdit>
#include <algorithm>

namespace qx {
namespace {

constexpr const char* filled = "qxFilled"; ///< the editor has received its text

} // namespace

void PictureDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
  QStyleOptionViewItem cell = option;
  initStyleOption(&cell, index);
  const QIcon picture = cell.icon;
  cell.icon = {};
  cell.features &= ~QStyleOptionViewItem::HasDecoration;
  const QStyle* style = cell.widget != nullptr ? cell.widget->style() : QApplication::style();
  style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
  const QRect area = QStyle::alignedRect(cell.direction, Qt::AlignCenter, cell.decorationSize, cell.rect);
  // Some colours would merge with the selection.
  if (!picture.isNull() && cell.state.testFlag(QStyle::State_Selected)) {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(cell.palette.base());
    painter->drawEllipse(area.adjusted(-1, -1, 1, 1));
    painter->restore();
  }
  // Never tinted: the colour has a meaning.
  picture.paint(painter, area, Qt::AlignCenter,
                cell.state.testFlag(QStyle::State_Enabled) ? QIcon::Normal : QIcon::Disabled);
}

QWidget* GridDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                                    const QModelIndex& index) const {
  switch (kind(index)) {
  case GridColumnKind::Unit: {
    auto* combo = new CodeCombo(true, parent);
    ComboContent content;
    content.rows = grid_.editing()->units();
    content.hiddenColumn = 0; // the cell shows the code
    combo->offer(content);
    return combo;
  }
  case GridColumnKind::LongText: {
    auto* text = new QPlainTextEdit(parent);
    text->setTabChangesFocus(true);
    return text;
  }
  case GridColumnKind::Picture:
  case GridColumnKind::Button:
  case GridColumnKind::Check:
    return nullptr;
  case GridColumnKind::Text:
  case GridColumnKind::Number:
  case GridColumnKind::Money:
  case GridColumnKind::Date:
    break;
  }
  auto* line = new QLineEdit(parent);
  line->setFrame(false);
  if (kind(index) == GridColumnKind::Number || kind(index) == GridColumnKind::Money)
    line->setAlignment(Qt::AlignRight);
  if (kind(index) == GridColumnKind::Date) line->setPlaceholderText(QStringLiteral("tt.mm.jjjj"));
  return line;
}

void GridDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
  // Called again whenever the model changes: keeps what is being typed.
  if (editor->property(filled).toBool()) return;
  editor->setProperty(filled, true);
  const QString text = index.data(Qt::EditRole).toString();
  if (auto* note = qobject_cast<QPlainTextEdit*>(editor)) {
    note->setPlainText(QString(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
  } else if (auto* combo = dynamic_cast<CodeCombo*>(editor)) {
    combo->showCode(fromQt(text));
    combo->lineEdit()->selectAll();
  } else {
    static_cast<QLineEdit*>(editor)->setText(text);
    static_cast<QLineEdit*>(editor)->selectAll();
  }
}

void GridDelegate::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const {
  if (auto* note = qobject_cast<QPlainTextEdit*>(editor)) {
    if (!note->document()->isModified()) return;
    model->setData(index, note->toPlainText().replace(QLatin1Char('\n'), QStringLiteral("\r\n")));
  } else if (auto* combo = dynamic_cast<CodeCombo*>(editor)) {
    combo->complete();
    model->setData(index, toQt(combo->code()));
  } else {
    model->setData(index, static_cast<QLineEdit*>(editor)->text());
  }
}

void GridDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                        const QModelIndex& index) const {
  QRect area = option.rect;
  if (kind(index) == GridColumnKind::LongText) {
    const QRect room = editor->parentWidget()->rect();
    const QFontMetrics metrics = editor->fontMetrics();
    area.setSize({std::max(area.width(), metrics.averageCharWidth() * 50), metrics.lineSpacing() * 7});
    area.setSize(area.size().boundedTo(room.size()));
    area.moveLeft(std::clamp(area.left(), 0, room.width() - area.width()));
    area.moveTop(std::clamp(area.top(), 0, room.height() - area.height()));
  }
  editor->setGeometry(area);
}

void GridDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  if (kind(index) == GridColumnKind::Check) option->features &= ~QStyleOptionViewItem::HasCheckIndicator;
}

void GridDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  if (kind(index) == GridColumnKind::Picture || kind(index) == GridColumnKind::Button) {
    PictureDelegate::paint(painter, option, index);
    return;
  }
  // A cell without a picture is painted by the toolkit.
  QStyledItemDelegate::paint(painter, option, index); // NOLINT(bugprone-parent-virtual-call)
  if (kind(index) != GridColumnKind::Check) return;
  const QStyle* style = option.widget != nullptr ? option.widget->style() : QApplication::style();
  QStyleOptionButton box;
  box.initFrom(option.widget);
  box.state = index.flags().testFlag(Qt::ItemIsUserCheckable) ? QStyle::State_Enabled : QStyle::State_None;
  box.state |= index.data(Qt::CheckStateRole).toInt() == Qt::Checked ? QStyle::State_On : QStyle::State_Off;
  const QSize size(style->pixelMetric(QStyle::PM_IndicatorWidth, &box, option.widget),
                   style->pixelMetric(QStyle::PM_IndicatorHeight, &box, option.widget));
  box.rect = QStyle::alignedRect(option.direction, Qt::AlignCenter, size, option.rect);
  style->drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, painter, option.widget);
}

bool GridDelegate::editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                               const QModelIndex& index) {
  if (kind(index) != GridColumnKind::Check)
    return QStyledItemDelegate::editorEvent(event, model, option, index);
  if (!index.flags().testFlag(Qt::ItemIsUserCheckable)) return false;
  const bool clicked = event->type() == QEvent::MouseButtonRelease &&
                       static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton;
  const bool pressed =
      event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space;
  if (!clicked && !pressed) return false;
  const bool on = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
  return model->setData(index, on ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}

bool GridDelegate::eventFilter(QObject* editor, QEvent* event) {
  auto* note = qobject_cast<QPlainTextEdit*>(editor);
  const bool pressed = event->type() == QEvent::KeyPress;
  if (note != nullptr && (pressed || event->type() == QEvent::ShortcutOverride)) {
    const auto* key = static_cast<QKeyEvent*>(event);
    const bool enter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
    const bool ends = enter && key->modifiers().testFlag(Qt::ControlModifier);
    // Otherwise the dialog would take Ctrl+Enter, save the job and go on to the next one.
    if (!pressed && ends) {
      event->accept();
      return true;
    }
    // Enter begins a new line; Ctrl+Enter ends editing, like Tab.
    if (pressed && (key->key() == Qt::Key_Tab || ends)) {
      emit commitData(note);
      emit closeEditor(note, enter ? NoHint : EditNextItem);
      return true;
    }
  }
  return QStyledItemDelegate::eventFilter(editor, event);
}

} // namespace qx
