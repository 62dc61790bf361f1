// The window program: arguments to window, exceptions to exit status.
#include "adapters/system/program_entry.h"
#include "adapters/system/stream_diagnostics.h"
#include "composition/composition.h"
#include "platform/path_text.h"
#include "program/busy_notice.h"
#include "program/program_error.h"
#include "program/version.h"
#include "program/view_arguments.h"
#include "ui/lookup_bridge.h"
#include "ui/qt/appearance.h"
#include "ui/qt/busy_wait.h"
#include "ui/qt/end_on_signal.h"
#include "ui/qt/job_dialog_window.h"
#include "ui/qt/job_view_dialogs.h"
#include "ui/qt/job_view_window.h"
#include "ui/qt/lookup_window.h"
#include "ui/qt/qt_desktop.h"
#include "ui/qt/qt_job_view.h"
#include "ui/qt/text.h"

#include <QApplication>
#include <QFileInfo>
#include <QLocale>
#include <QMessageBox>

#include <cstdlib>
#include <iostream>
#include <new>
#include <optional>
#include <string>
#include <utility>

namespace qx {
namespace {

/// The user may not write the database file.
bool readOnly(const Connection& connection) {
  const auto files = connection.files();
  return !files.empty() && !QFileInfo(toQt(textOf(files.front()))).isWritable();
}

/// Leaves the event loop when the engine is unloaded. `quit` would ask the windows again.
class LoopEnd final : public EngineEvents {
public:
  void JobViewUnload() override {
    unloaded_ = true;
    QCoreApplication::exit(0);
  }
  /// Possibly before the event loop has started.
  bool unloaded() const { return unloaded_; }

private:
  bool unloaded_ = false;
};

/// Releases the lock and destroys the window before the engine is destroyed.
class OpenView {
public:
  OpenView(ImportJobObject2& engine, QtJobView& view) : engine_(engine), view_(view) {}
  OpenView(const OpenView&) = delete;
  OpenView& operator=(const OpenView&) = delete;
  ~OpenView() {
    view_.leave();
    if (engine_.importLock().held()) engine_.Unload();
    view_.close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

private:
  ImportJobObject2& engine_;
  QtJobView& view_;
};

[[noreturn]] void refuseLock(const std::string& reason, bool forbidden) {
  throw ProgramError(ExitCode::Failure, "the import cannot be locked: " + reason,
                     forbidden ? "Let this user write the database file and its folder."
                               : "Try again when no other program holds the database, and see that it can be "
                                 "written.")
      .of(forbidden ? ErrorCause::ReadOnlyDatabase : ErrorCause::NoLock);
}

ExitCode openView(const ViewArguments& arguments, Diagnostics& diagnostics, QtDesktop& desktop) {
  std::optional<DialogContext> context;
  QtJobView view([&context](ImportJobObject2& engine) {
    return std::make_unique<JobViewWindow>(context->environment, engine,
                                           dialogsOf(*context, Composition::schemaVersion()));
  });
  ProgramOptions options = arguments.options;
  options.program = std::string(viewProgram) + ' ' + std::string(versionNumber);
  Composition composition(std::move(options), diagnostics, desktop, view);
  Environment& environment = composition.open();
  desktop.watch(environment.connection);
  composition.offerLookups([&environment, &diagnostics] {
    return std::make_unique<QtAuskunft>(environment.localSettings, diagnostics);
  });
  ImportJobObject2 engine(environment);
  if (!engine.Session()) return ExitCode::Failure; // a box has shown the reason
  LookupBridge lookups(environment);
  context.emplace(DialogContext{environment, engine, lookups, [] { return std::make_unique<QtBusyWait>(); },
                                askReleaseInBox});
  view.attach(engine);
  LoopEnd loopEnd;
  const Subscription subscription = engine.subscribe(loopEnd);
  const EndOnSignal ending(engine);
  const OpenView opened(engine, view);
  engine.setStartParameters({"", "", arguments.file});
  // The window program takes the lock itself, because `JobViewShow` does not report why it was refused.
  BusyNotice wait(std::cerr);
  const LockOutcome lock = engine.importLock().take(&wait);
  if (lock.state == LockState::Refused) return ExitCode::Refused;
  if (lock.state == LockState::Unavailable) refuseLock(lock.reason, readOnly(*environment.connection));
  engine.JobViewShow();
  if (!view.isOpen() && !ending.ended() && !loopEnd.unloaded()) return ExitCode::Failure;
  if (!ending.ended() && !loopEnd.unloaded()) QApplication::exec();
  return ExitCode::Success;
}

void printError(const ProgramError& error) {
  std::cerr << viewProgram << ": " << error.what() << '\n';
  if (!error.nextStep().empty()) std::cerr << error.nextStep() << '\n';
  std::cerr << std::flush;
}

std::string_view sentenceOf(ErrorCause cause) {
  switch (cause) {
  case ErrorCause::Call:
    return "Der Aufruf oder die Datenbank passt nicht zu diesem Programm.";
  case ErrorCause::NoDatabase:
    return "Die Datenbank gibt es nicht.";
  case ErrorCause::OlderDatabase:
    return "Die Datenbank stammt von einer älteren Version dieses Programms und muss erst umgestellt werden.";
  case ErrorCause::ReadOnlyDatabase:
    return "Die Datenbank kann nur gelesen werden: Diesem Benutzer fehlt das Recht, die Datei und ihren "
           "Ordner "
           "zu ändern.";
  case ErrorCause::NoLock:
    return "Die Sperre kann nicht in die Datenbank geschrieben werden.";
  case ErrorCause::BusyDatabase:
    return "Die Datenbank wird gerade von einem anderen Programm benutzt. Versuchen Sie es später noch "
           "einmal.";
  case ErrorCause::Database:
    break;
  }
  return "Die Datenbank kann nicht gelesen oder geschrieben werden.";
}

/// A sentence for the clerk, followed by the technical message for the support.
void showError(QtDesktop& desktop, const ProgramError& error) {
  printError(error);
  std::string text = "Die Importvorgänge können nicht geöffnet werden.\r\n" +
                     std::string(sentenceOf(error.cause())) + "\r\n\r\nFür die Betreuung: " + error.what();
  if (!error.nextStep().empty()) text += "\r\n" + error.nextStep();
  desktop.show({.text = text, .icon = MessageIcon::Critical});
}

/// Without a display the toolkit would abort with a core dump.
void showFatal(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
  if (type != QtFatalMsg) {
    std::cerr << fromQt(text) << std::endl;
    return;
  }
  std::cerr << viewProgram << ": the window cannot be opened: " << fromQt(text)
            << "\nIs there a display? Without one: qximportjob list" << std::endl;
  std::_Exit(static_cast<int>(ExitCode::Failure));
}

void prepare(QApplication& application) {
  // No display name: the toolkit would append it to the title of every box.
  QApplication::setApplicationName(QStringLiteral("qximportjob"));
  QApplication::setApplicationVersion(toQt(versionNumber));
  // The last window may be a box shown before the job window.
  QApplication::setQuitOnLastWindowClosed(false);
  dress(application);
}

ExitCode runInWindow(int& count, char** arguments, const ViewArguments& parsed) {
  qInstallMessageHandler(showFatal);
  QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
  QApplication application(count, arguments);
  prepare(application);
  StreamDiagnostics diagnostics(std::cerr, parsed.options.verbose);
  QtDesktop desktop(diagnostics);
  return exitCodeOf([&] { return openView(parsed, diagnostics, desktop); },
                    [&](const ProgramError& error) { showError(desktop, error); });
}

/// What is said before there is a window, to somebody without a console.
void sayInBox(int& count, char** arguments, const std::string& text) {
  const QApplication application(count, arguments);
  QMessageBox::information(nullptr, toQt(viewProgram), toQt(text));
}

ExitCode run(int& count, char** arguments) {
  const ViewArguments parsed = parseViewArguments(count, arguments, versionText);
  if (parsed.text.empty()) return runInWindow(count, arguments, parsed);
  if (hasStandardError())
    std::cout << parsed.text << std::flush;
  else
    sayInBox(count, arguments, parsed.text);
  return ExitCode::Success;
}

ExitCode guarded(int count, char** arguments) {
  const auto refuse = [&](const ProgramError& error) {
    printError(error);
    if (!hasStandardError()) sayInBox(count, arguments, error.what() + ('\n' + error.nextStep()));
  };
  try {
    return exitCodeOf([&] { return run(count, arguments); }, refuse);
  } catch (const std::bad_alloc& error) {
    printError(ProgramError(ExitCode::Failure, error.what()));
    return ExitCode::Failure;
  }
}

} // namespace
} // namespace qx

int main(int count, char** arguments) {
  return qx::withUtf8(count, arguments,
                      [](int words, char** texts) { return static_cast<int>(qx::guarded(words, texts)); });
}
