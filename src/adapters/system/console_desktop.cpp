#include "adapters/system/console_desktop.h"

#include "model/text.h"

namespace qx {

void ConsoleDesktop::show(const Message& message) { write(message.title, message.text); }

bool ConsoleDesktop::ask(const Message& message) {
  write(message.title, message.text + " (unbeaufsichtigt: Nein)");
  return false;
}

std::optional<std::string> ConsoleDesktop::chooseFile(std::string_view title, std::string_view /*filter*/,
                                                      FileUse /*use*/) {
  write(title, "Unbeaufsichtigt wird keine Datei gewählt; der Dateiname muss angegeben werden.");
  return std::nullopt;
}

void ConsoleDesktop::write(std::string_view title, std::string_view text) {
  const std::string line = oneLine(text);
  output_ << oneLine(title) << ": " << line << '\n' << std::flush;
  diagnostics_.report({title, line, {}});
}

void AbsentJobView::open() {
  desktop_.show({"Dieses Programm hat kein Fenster. Der Befehl 'qximportjob view' öffnet die "
                 "Importvorgänge.",
                 std::string(defaultTitle), MessageIcon::Information});
}

} // namespace qx
