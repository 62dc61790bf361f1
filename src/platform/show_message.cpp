#include "platform/show_message.h"

#include <exception>

namespace qx {

void showMessage(const Environment& environment, const Message& message) {
  try {
    environment.desktop.show(message);
  } catch (const std::exception& error) {
    environment.diagnostics.report({"box: " + message.text, error.what(), ""});
  }
}

bool askQuestion(const Environment& environment, const Message& question) {
  try {
    return environment.desktop.ask(question);
  } catch (const std::exception& error) {
    environment.diagnostics.report({"question: " + question.text, error.what(), ""});
    return false;
  }
}

} // namespace qx
