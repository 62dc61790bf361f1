// Drives windows that are open modally.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QTest>
#include <QTimer>

#include <functional>

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

/// Replaces what stands in a field and goes on to the next one.
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
