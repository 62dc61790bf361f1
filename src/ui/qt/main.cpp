// The window program: arguments to window, exceptions to exit status.
#include "adapters/system/stream_diagnostics.h"
#include "cli/busy_notice.h"
#include "cli/composition.h"
#include "cli/exit_code.h"
#include "cli/version.h"
#include "cli/view_arguments.h"
#include "ui/lookup_bridge.h"
#include "ui/qt/busy_wait.h"
#include "ui/qt/end_on_signal.h"
#include "ui/qt/job_dialog_window.h"
#include "ui/qt/job_view_window.h"
#include "ui/qt/lookup_window.h"
#include "ui/qt/options_window.h"
#include "ui/qt/pictures.h"
#include "ui/qt/qt_desktop.h"
#include "ui/qt/qt_job_view.h"
#include "ui/qt/quiet_text.h"
#include "ui/qt/small_windows.h"
#include "ui/qt/text.h"

#include <QApplication>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QLocale>
#include <QPalette>
#include <QStyle>
#include <QTranslator>

#include <cstdlib>
#include <iostream>
#include <optional>

namespace qx {
namespace {

using cli::ExitCode;
using cli::ProgramError;

constexpr std::string_view noLockText = "the import cannot be locked: ";

/// The dialogs that the job window opens.
JobViewDialogs dialogsOf(const DialogContext& context) {
  JobViewDialogs dialogs;
  dialogs.openJob = [&context](QWidget* parent, std::string_view jobId, bool offerNext) {
    return showJobDialog(parent, context, jobId, offerNext) == DialogEnd::Next;
  };
  dialogs.options = [&context](QWidget* parent) {
    OptionsWindow(context.environment, parent, context.wait).exec();
  };
  dialogs.deleteDate = [&context](QWidget* parent) {
    DeleteDateWindow(context.environment, context.engine, parent).exec();
  };
  dialogs.about = [&context](QWidget* parent) { AboutWindow(context.environment, parent).exec(); };
  dialogs.report = [](QWidget* parent, std::string_view title, std::string_view text) {
    ErrorWindow(text, parent, title).exec();
  };
  return dialogs;
}

/// The user may not write the database file.
bool readOnly(const Connection& connection) {
  const auto files = connection.files();
  return !files.empty() && !QFileInfo(QString::fromStdString(files.front().string())).isWritable();
}

/// Leaves the event loop when the engine is unloaded. `quit` would ask the windows again.
class LoopEnd final : public EngineEvents {
public:
  void JobViewUnload() override {
    unloaded_ = true;
    QCoreApplication::exit(0);
  }
  /// Maybe before there was a loop to leave.
  bool unloaded() const { return unloaded_; }

private:
  bool unloaded_ = false;
};

/// Releases the lock and destroys the window before the engine goes.
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

ExitCode openView(const cli::ViewArguments& arguments, Diagnostics& diagnostics, QtDesktop& desktop) {
  std::optional<DialogContext> context;
  QtJobView view([&context](ImportJobObject2& engine) {
    return std::make_unique<JobViewWindow>(context->environment, engine, dialogsOf(*context));
  });
  cli::Composition composition(arguments.options, diagnostics, desktop, view);
  Environment& environment = composition.open();
  desktop.watch(environment.connection);
  composition.offerLookups([&environment, &diagnostics] {
    return std::make_unique<QtAuskunft>(environment.localSettings, diagnostics);
  });
  ImportJobObject2 engine(environment);
  if (!engine.Session()) return ExitCode::Failure; // a box has said why
  LookupBridge lookups(environment);
  context.emplace(DialogContext{environment, engine, lookups, [] { return std::make_unique<QtBusyWait>(); }});
  view.attach(engine);
  LoopEnd loopEnd;
  const Subscription subscription = engine.subscribe(loopEnd);
  const EndOnSignal ending(engine);
  const OpenView opened(engine, view);
  engine.setStartParameters({"", "", arguments.file});
  // The window program takes the lock itself, because `JobViewShow` does not say why it was not given.
  cli::BusyNotice wait(std::cerr);
  const LockOutcome lock = engine.importLock().take(&wait);
  if (lock.state == LockState::Refused) return ExitCode::Refused;
  if (lock.state == LockState::Unavailable)
    throw ProgramError(ExitCode::Failure, std::string(noLockText) + lock.reason,
                       readOnly(*environment.connection)
                           ? "Let this user write the database file and its folder."
                           : "Try again when no other program holds the database, and see that it can be "
                             "written.");
  engine.JobViewShow();
  if (!view.isOpen() && !ending.ended() && !loopEnd.unloaded()) return ExitCode::Failure;
  if (!ending.ended() && !loopEnd.unloaded()) QApplication::exec();
  return ExitCode::Success;
}

void tellOnMessages(const ProgramError& error) {
  std::cerr << cli::viewProgram << ": " << error.what() << '\n';
  if (!error.nextStep().empty()) std::cerr << error.nextStep() << '\n';
  std::cerr << std::flush;
}

/// Tells the clerk in a sentence, and those who look after the installation in their words.
void tell(QtDesktop& desktop, const ProgramError& error, std::string_view sentence) {
  tellOnMessages(error);
  Message message;
  message.text = "Die Importvorgänge können nicht geöffnet werden.\r\n" + std::string(sentence) +
                 "\r\n\r\nFür die Betreuung: " + error.what();
  if (!error.nextStep().empty()) message.text += "\r\n" + error.nextStep();
  message.icon = MessageIcon::Critical;
  desktop.show(message);
}

/// The toolkit ends a program that finds no display with a core dump.
void tellFatal(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
  if (type != QtFatalMsg) {
    std::cerr << text.toLocal8Bit().constData() << std::endl;
    return;
  }
  std::cerr << cli::viewProgram << ": the window cannot be opened: " << text.toLocal8Bit().constData()
            << "\nIs there a display? Without one: qximportjob list" << std::endl;
  std::_Exit(static_cast<int>(ExitCode::Failure));
}

void dress(QApplication& application) {
  // No display name: the toolkit would append it to the title of every box.
  QApplication::setApplicationName(QStringLiteral("qximportjob"));
  QApplication::setApplicationVersion(toQt(cli::versionNumber));
  QApplication::setWindowIcon(picture("qximportjob"));
  // The last window may be a box that comes before the job window.
  QApplication::setQuitOnLastWindowClosed(false);
  if (QApplication::style()->name() == QStringLiteral("windows"))
    QApplication::setStyle(QStringLiteral("Fusion"));
  QPalette colours = QApplication::palette();
  for (const auto group : {QPalette::Active, QPalette::Inactive})
    colours.setColor(group, QPalette::PlaceholderText, quietText(colours));
  QApplication::setPalette(colours);
  auto* const german = new QTranslator(&application);
  if (german->load(QStringLiteral("qtbase_de"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
    QApplication::installTranslator(german);
}

ExitCode runInWindow(int& count, char** arguments, const cli::ViewArguments& parsed) {
  qInstallMessageHandler(tellFatal);
  QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
  QApplication application(count, arguments);
  dress(application);
  StreamDiagnostics diagnostics(std::cerr, parsed.options.verbose);
  QtDesktop desktop(diagnostics);
  const auto end = [&](const ProgramError& error, std::string_view sentence) {
    tell(desktop, error, sentence);
    return error.code();
  };
  try {
    return openView(parsed, diagnostics, desktop);
  } catch (const ProgramError& error) {
    const bool missing = std::string_view(error.what()).ends_with(cli::noDatabaseText);
    const bool locked = std::string_view(error.what()).starts_with(noLockText);
    const bool unwritable = error.nextStep().starts_with("Let this user write");
    return end(error, missing ? "Die Datenbank gibt es nicht."
                      : unwritable
                          ? "Die Datenbank kann nur gelesen werden: Diesem Benutzer fehlt das Recht, die "
                            "Datei und ihren Ordner zu ändern."
                      : locked ? "Die Sperre kann nicht in die Datenbank geschrieben werden."
                               : "Der Aufruf oder die Datenbank passt nicht zu diesem Programm.");
  } catch (const BusyError& error) {
    return end(ProgramError(ExitCode::Failure, error.what(),
                            "Another program holds the database. Try again when it has finished."),
               "Die Datenbank wird gerade von einem anderen Programm benutzt. Versuchen Sie es später noch "
               "einmal.");
  } catch (const std::exception& error) {
    return end(ProgramError(ExitCode::Failure, error.what()),
               "Die Datenbank kann nicht gelesen oder geschrieben werden.");
  }
}

/// The one place where exceptions become exit codes.
ExitCode guarded(int count, char** arguments) {
  try {
    const cli::ViewArguments parsed = cli::parseViewArguments(count, arguments, cli::versionText);
    if (!parsed.text.empty()) {
      std::cout << parsed.text << std::flush;
      return ExitCode::Success;
    }
    return runInWindow(count, arguments, parsed);
  } catch (const ProgramError& error) {
    tellOnMessages(error);
    return error.code();
  } catch (const std::exception& error) {
    tellOnMessages(ProgramError(ExitCode::Failure, error.what()));
    return ExitCode::Failure;
  }
}

} // namespace
} // namespace qx

int main(int count, char** arguments) { return static_cast<int>(qx::guarded(count, arguments)); }
