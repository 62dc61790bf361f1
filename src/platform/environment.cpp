#include "platform/environment.h"

#include "platform/failure.h"

namespace qx {

void showMessage(const Environment& environment, const Message& message) {
  trapped(environment.diagnostics, {"box: " + message.text}, [&] { environment.desktop.show(message); });
}

bool askQuestion(const Environment& environment, const Message& question) {
  bool agreed = false;
  trapped(environment.diagnostics, {"question: " + question.text},
          [&] { agreed = environment.desktop.ask(question); });
  return agreed;
}

} // namespace qx
