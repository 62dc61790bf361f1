// Drives windows that are open modally.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QMenuBar>
#include <QTest>
#include <QTimer>

#include <functional>
#include <map>

namespace qx {

/// Waits until keys arrive in a window; it counts as active with its parent, too.
inline void awaitActive(QWidget& window) {
  window.activateWindow();
  EXPECT_TRUE(QTest::qWaitFor([&window] { return QApplication::activeWindow() == &window; }));
}

/// Runs the steps in the next modal window that opens, and closes it when they leave it open.
inline void inNextWindow(std::function<void(QDialog&)> steps) {
  QTimer::singleShot(0, [steps = std::move(steps)] {
    auto* window = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (window == nullptr) {
      ADD_FAILURE() << "no window has opened";
      return;
    }
    awaitActive(*window);
    steps(*window);
    if (window->isVisible()) window->done(QDialog::Rejected);
  });
}

/// The child of this name; a missing one fails the test.
template <class Widget>
Widget& child(QWidget& window, const char* name) {
  auto* found = window.findChild<Widget*>(QString::fromUtf8(name));
  if (found == nullptr) throw std::runtime_error(std::string("no widget ") + name);
  return *found;
}

inline void press(QWidget& window, const char* button) {
  QTest::mouseClick(&child<QWidget>(window, button), Qt::LeftButton);
}

/// Types a text with any letters.
inline void typeText(QWidget& widget, const char* text) {
  for (const QChar letter : QString::fromUtf8(text))
    QTest::sendKeyEvent(QTest::Click, &widget, static_cast<Qt::Key>(letter.toUpper().unicode()), letter,
                        Qt::NoModifier);
}

/// Fails for a letter that is marked twice among the menus, buttons and labels of a window.
inline void expectSingleAccessKeys(QWidget& window) {
  std::map<QChar, QString> texts;
  const auto take = [&texts](const QString& text) {
    const qsizetype mark = text.indexOf(QLatin1Char('&'));
    if (mark < 0 || mark + 1 == text.size()) return;
    const auto [known, added] = texts.emplace(text[mark + 1].toLower(), text);
    EXPECT_TRUE(added) << text.toStdString() << " and " << known->second.toStdString();
  };
  for (const QLabel* label : window.findChildren<QLabel*>())
    if (label->buddy() != nullptr) take(label->text());
  for (const QAbstractButton* button : window.findChildren<QAbstractButton*>())
    if (button->objectName() != QStringLiteral("qt_toolbar_ext_button")) take(button->text());
  for (const QGroupBox* box : window.findChildren<QGroupBox*>()) take(box->title());
  for (const QMenuBar* bar : window.findChildren<QMenuBar*>())
    for (const QAction* menu : bar->actions()) take(menu->text());
  EXPECT_FALSE(texts.empty());
}

/// Replaces the text of a field and moves to the next one.
inline void enterInto(QWidget& window, const char* field, const char* text) {
  auto& editor = child<QWidget>(window, field);
  editor.setFocus();
  QTest::keyClick(&editor, Qt::Key_A, Qt::ControlModifier);
  typeText(editor, text);
  // While completions are offered, the keys go through their list.
  QWidget* popup = QApplication::activePopupWidget();
  QTest::keyClick(popup != nullptr ? popup : &editor, Qt::Key_Tab);
}

} // namespace qx
