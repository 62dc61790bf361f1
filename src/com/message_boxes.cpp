#include "com/message_boxes.h"

#include "com/text.h"
#include "com/windows_headers.h"
#include "model/text.h"

#include <exception>
#include <string>

namespace qx::com {
namespace {

int box(const Message& message, UINT buttons) {
  const UINT icon = message.icon == MessageIcon::Critical      ? MB_ICONERROR
                    : message.icon == MessageIcon::Exclamation ? MB_ICONWARNING
                    : message.icon == MessageIcon::Information ? MB_ICONINFORMATION
                                                               : 0U;
  return MessageBoxW(GetActiveWindow(), wide(message.text).c_str(), wide(message.title).c_str(),
                     buttons | icon | MB_TASKMODAL);
}

} // namespace

void MessageBoxes::show(const Message& message) { box(message, MB_OK); }

/// Without a desktop there is no box and no answer, which is no.
bool MessageBoxes::ask(const Message& message) { return box(message, MB_YESNO | MB_DEFBUTTON2) == IDYES; }

std::optional<std::string> MessageBoxes::chooseFile(std::string_view /*title*/, std::string_view /*filter*/,
                                                    FileUse /*use*/) {
  return std::nullopt;
}

void MessageBoxes::yield() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
    if (message.message == WM_QUIT) {
      // The host's own loop is to see it.
      PostQuitMessage(static_cast<int>(message.wParam));
      return;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

void MissingJobView::open() {
  desktop_.show({"Das Fenster der Version 1 gibt es nicht mehr. ImportJobObject2 öffnet das jetzige."});
}

void DebuggerDiagnostics::report(const Diagnostic& diagnostic) noexcept {
  try {
    std::string line = "QXImportJob: " + std::string(diagnostic.where) + ": " + oneLine(diagnostic.what);
    if (!diagnostic.job.empty()) line += " (" + oneLine(diagnostic.job) + ")";
    OutputDebugStringW(wide(line + "\n").c_str());
  } catch (const std::exception&) {
    OutputDebugStringW(L"QXImportJob: no memory for a report\n");
  }
}

} // namespace qx::com
