// A clerk who has a keyboard and no mouse.
#pragma once

#include <QApplication>
#include <QWidget>

#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qx {

/// Presses keys where a keyboard would: on the X server, which passes them to the window that has the focus.
///
/// The clerk works in a thread of its own, since a modal window does not return to the one that opened it;
/// what the clerk looks at is read in the thread of the windows.
class Clerk {
public:
  /// Runs the message loop until the clerk has done the work. An exception fails the test.
  static void work(const std::function<void(Clerk&)>& day);

  Clerk();
  Clerk(const Clerk&) = delete;
  Clerk& operator=(const Clerk&) = delete;
  ~Clerk();

  /// Presses keys as the manual writes them: "Strg+Umschalt+G", "Eingabe", "Pfeil nach unten".
  void press(std::string_view keys, int times = 1);
  /// Types letters and digits.
  void type(std::string_view text);

  /// Whether it comes true soon. The question is answered in the thread of the windows, as below; what it
  /// raises there is raised here.
  bool sees(const std::function<bool()>& fact) const;
  template <class Look>
  auto look(Look&& question) const {
    decltype(question()) answer{};
    std::exception_ptr raised;
    QMetaObject::invokeMethod(
        qApp,
        [&] {
          try {
            answer = question();
          } catch (...) {
            raised = std::current_exception();
          }
        },
        Qt::BlockingQueuedConnection);
    if (raised) std::rethrow_exception(raised);
    return answer;
  }
  /// Waits until the keys go to a window of this object or class name; raises when they never do.
  void awaitWindow(const char* name) const;

private:
  class Keyboard;
  std::unique_ptr<Keyboard> keyboard_;
};

/// The window of this object or class name that has the keys; null for another one.
QWidget* windowWithKeys(const char* name);

} // namespace qx
