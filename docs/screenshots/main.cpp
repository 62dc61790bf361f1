// Draws the pictures of the manual from the demo company: draw_screenshots DATABASE FOLDER
#include "adapters/system/stream_diagnostics.h"
#include "composition/composition.h"
#include "engine/import_job_object2.h"
#include "ui/lookup_bridge.h"
#include "ui/qt/appearance.h"
#include "ui/qt/job_dialog_window.h"
#include "ui/qt/job_view_window.h"
#include "ui/qt/lookup_window.h"
#include "ui/qt/options_window.h"
#include "ui/qt/small_windows.h"
#include "ui/qt/text.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QEventLoop>
#include <QLocale>
#include <QPixmap>
#include <QTableView>
#include <QTimer>

#include <cstdlib>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>

namespace qx {
namespace {

constexpr std::string_view changedCustomer = "DE000000000000000000000000000017";
constexpr std::string_view orderWithoutStock = "DE000000000000000000000000000073";
constexpr std::string_view contractOfUnknownKind = "DE000000000000000000000000000042";

/// Pictures are taken after everything that was due has been drawn, the details of the current job included.
void settle() {
  QEventLoop loop;
  QTimer::singleShot(400, &loop, &QEventLoop::quit);
  loop.exec();
}

class Screenshots {
public:
  Screenshots(Environment& environment, ImportJobObject2& engine, QString folder)
      : environment_(environment), engine_(engine), folder_(std::move(folder)) {}

  void drawAll() {
    JobViewWindow window(environment_, engine_, {});
    window.open();
    window.resize(1280, 760);
    save(window, "importvorgaenge");
    drawDialogs(window);
    for (const char* tool : {"ProcessTransactions", "ViewDone"})
      window.findChild<QAction*>(QString::fromUtf8(tool))->trigger();
    auto* const list = window.findChild<QTableView*>(QStringLiteral("TDBList1"));
    list->setCurrentIndex(list->model()->index(9, 2));
    save(window, "verarbeitet");
  }

private:
  void save(QWidget& widget, const char* name) {
    settle();
    const QString file = folder_ + QStringLiteral("/") + QLatin1String(name) + QStringLiteral(".png");
    if (!widget.grab().save(file)) throw std::runtime_error(fromQt(file) + ": cannot be written");
  }

  /// Draws a modal dialog, does something in it and closes it. `open` returns when the dialog is closed.
  void modal(const char* name, const std::function<void()>& open,
             const std::function<void(QDialog&)>& inside = {}) {
    QTimer::singleShot(0, [this, name, inside] {
      auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr) throw std::logic_error(std::string("no dialog for ") + name);
      save(*dialog, name);
      if (inside) inside(*dialog);
      dialog->done(QDialog::Rejected);
    });
    open();
    settle();
  }

  void drawDialogs(QWidget& parent) {
    const auto press = [](QDialog& dialog, const char* button) {
      auto* const found = dialog.findChild<QAbstractButton*>(QString::fromUtf8(button));
      if (found == nullptr) throw std::logic_error(std::string("no button ") + button);
      found->click();
    };
    modal(
        "kunde",
        [&] {
          showJobDialog(&parent, context_, changedCustomer, {3, 11});
        },
        [&](QDialog& dialog) {
          modal("adressen", [&] { press(dialog, "cmdAdressen"); });
          modal("auskunft", [&] { press(dialog, "cmdKundennummer"); });
        });
    modal("auftrag", [&] { showJobDialog(&parent, context_, orderWithoutStock, {4, 11}); });
    modal("vertrag", [&] { showJobDialog(&parent, context_, contractOfUnknownKind, {5, 11}); });
    modal("optionen", [&] { OptionsWindow(environment_, &parent).exec(); });
    modal("loeschen", [&] { DeleteDateWindow(environment_, engine_, &parent, {}).exec(); });
  }

  Environment& environment_;
  ImportJobObject2& engine_;
  QString folder_;
  LookupBridge lookups_{environment_};
  DialogContext context_{environment_, engine_, lookups_};
};

void draw(const std::string& database, const std::string& folder) {
  StreamDiagnostics diagnostics(std::cerr, true);
  // Nobody is there to answer a box.
  class NoBoxes final : public Desktop {
    void show(const Message& /*message*/) override {}
    bool ask(const Message& /*message*/) override { return false; }
    std::optional<std::string> chooseFile(std::string_view /*title*/, std::string_view /*filter*/,
                                          FileUse /*use*/) override {
      return std::nullopt;
    }
    void yield() override { QApplication::processEvents(); }
  } desktop;
  class NoView final : public JobView {
    void open() override {}
    void close() override {}
  } view;
  ProgramOptions options;
  options.database = database;
  options.user = "Erika Beispiel";
  options.sessionDate = makeDate(2026, 11, 24);
  Composition composition(options, diagnostics, desktop, view);
  composition.create(true, DatabaseUsers::Owner);
  Environment& environment = composition.open();
  composition.offerLookups([&environment, &diagnostics] {
    return std::make_unique<QtAuskunft>(environment.localSettings, diagnostics);
  });
  ImportJobObject2 engine(environment);
  Screenshots(environment, engine, toQt(folder)).drawAll();
}

} // namespace
} // namespace qx

int main(int count, char** arguments) {
  if (count != 3) {
    std::cerr << "usage: draw_screenshots DATABASE FOLDER\n";
    return 2;
  }
  QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
  QApplication application(count, arguments);
  QApplication::setStyle(QStringLiteral("Fusion"));
  qx::dress(application);
  try {
    qx::draw(arguments[1], arguments[2]);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 4;
  }
}
