// What a clerk can do in every window where the outside fails: no connection, a dead one, one that refuses, a
// component that raises. Runs and deletions have their own such test, of the engine's members.
#include "dialog_fixture.h"

#include "support/failing_components.h"
#include "support/recording_connection.h"
#include "ui/address_dialog_presenter.h"
#include "ui/delete_by_date_presenter.h"
#include "ui/job_view_presenter.h"
#include "ui/options_dialog_presenter.h"

#include <array>
#include <filesystem>
#include <set>

namespace qx {
namespace {

/// The window of the job view, which records its calls.
class SilentHost final : public JobViewHost {
public:
  DialogEnd openJob(std::string_view /*jobId*/, const JobPlace& /*place*/) override {
    return DialogEnd::Closed;
  }
  void options() override {}
  void deleteDate() override {}
  void about() override {}
  void report(std::string_view title, std::string_view text) override {
    reports += "|" + std::string(title) + ": " + std::string(text);
  }
  void showCurrent() override {}
  void redraw() override {}
  void closeWindow() override {}

  std::string reports;
};

/// Everything that is open when the outside fails.
struct OpenWindows {
  explicit OpenWindows(TestErp& erp) : erp(erp), world(erp.environment) {}

  void openAll() {
    view.create();
    view.load();
    customer = makeJobDialog(context, qxtjobkunden);
    customer->load("C1");
    contract = makeJobDialog(context, qxtjobverträge);
    contract->load("V1");
    order = makeJobDialog(context, qxtJobAufträge);
    order->load("O1");
    addresses = customer->kind().addresses->addresses();
    options.load();
  }

  TestErp& erp;
  FailingWorld world;
  ImportJobObject2 engine{world.environment};
  LookupBridge lookups{world.environment};
  DialogContext context{world.environment, engine, lookups};
  SilentHost host;
  JobViewPresenter view{world.environment, engine, host};
  OptionsDialogPresenter options{world.environment};
  DeleteByDatePresenter deletion{world.environment, engine};
  std::unique_ptr<JobDialogPresenter> customer;
  std::unique_ptr<JobDialogPresenter> contract;
  std::unique_ptr<JobDialogPresenter> order;
  std::unique_ptr<AddressDialogPresenter> addresses;
};

/// Does one thing; what the clerk can see of it besides boxes.
struct Step {
  std::string_view name;
  std::function<std::string(OpenWindows&)> run;
};

std::string seen(const JobViewPresenter& view) {
  return view.state().databaseGone ? "list gone" : view.state().details;
}

Step viewing(std::string_view name, std::function<void(JobViewPresenter&)> act) {
  return {name, [act = std::move(act)](OpenWindows& w) {
            act(w.view);
            return seen(w.view);
          }};
}

Step command(std::string_view name, Tool tool) {
  return viewing(name, [tool](JobViewPresenter& view) { view.command(tool); });
}

/// What the action says, and the notice after it.
template <class Presenter, class Action>
Step noticed(std::string_view name, std::unique_ptr<Presenter> OpenWindows::*which, Action act) {
  return {name, [=](OpenWindows& w) {
            const std::string said = act(*(w.*which), w);
            return said + (w.*which)->notice();
          }};
}

Step entry(std::string_view name, std::unique_ptr<JobDialogPresenter> OpenWindows::*which,
           std::string_view control, std::string_view text) {
  return noticed(name, which, [=](JobDialogPresenter& dialog, OpenWindows&) {
    dialog.type(dialog.find(control).value(), text);
    dialog.leave(dialog.find(control).value());
    return "";
  });
}

Step saving(std::string_view name, std::unique_ptr<JobDialogPresenter> OpenWindows::*which) {
  return noticed(name, which, [](JobDialogPresenter& dialog, OpenWindows&) {
    return dialog.nothingNewSince(dialog.findings()) && dialog.save() ? "saved " : "open ";
  });
}

Step loading(std::string_view name, std::string_view jobId, std::int16_t jobType) {
  return {name, [=](OpenWindows& w) {
            const auto dialog = makeJobDialog(w.context, jobType);
            return (dialog->load(jobId) ? "read " : "unread ") + dialog->notice();
          }};
}

const std::vector<Step>& steps() {
  using W = OpenWindows;
  static const std::vector<Step> all{
      viewing("view is made", [](auto& view) { view.create(); }),
      viewing("view is loaded", [](auto& view) { view.load(); }),
      {"view is closed", [](W& w) { return std::string(w.view.close({}) ? "gone" : "stays"); }},
      viewing("details", [](auto& view) { view.readDetails(); }),
      viewing("search", [](auto& view) { view.search("hafen"); }),
      viewing("head is clicked", [](auto& view) { view.headClick(3); }),
      viewing("timer", [](auto& view) { view.timerTick(); }),
      viewing("row is opened", [](auto& view) { view.open(0); }),
      command("delete by date", Tool::DeleteDate),
      command("check", Tool::UpdateDisplay),
      command("import", Tool::ImportProcessTransactions),
      command("export", Tool::Export),
      command("filter", Tool::ViewDone),
      command("options", Tool::Options),
      loading("customer is opened", "C1", qxtjobkunden),
      loading("contract is opened", "V1", qxtjobverträge),
      loading("order is opened", "O1", qxtJobAufträge),
      {"any job is opened",
       [](W& w) { return std::string(openJobDialog(w.context, "O1") ? "open" : "none"); }},
      entry("customer: number", &W::customer, "txtKundennummer", "20001"),
      entry("customer: bank", &W::customer, "txtBlz", "90000002"),
      entry("contract: object", &W::contract, "txtVertragsgegenstand", "G2"),
      entry("order: customer", &W::order, "txtKundennummer", "20002"),
      noticed("order: article", &W::order,
              [](auto& order, W&) {
                const std::string refused = order.kind().grid->editing()->edit(0, 1, "B200");
                order.checkMore(1);
                return refused;
              }),
      {"order: details",
       [](W& w) {
         const auto details = w.order->kind().grid->editing()->details(0);
         details->leave(details->find("tdbnbrPreis").value());
         return details->control(details->find("txtArtikelnummer").value()).description;
       }},
      noticed("order: new position", &W::order,
              [](auto& order, W&) { return std::to_string(order.kind().grid->editing()->addRow()); }),
      noticed("order: lookup", &W::order,
              [](auto& order, W&) {
                return order.lookUp(order.find("txtKundennummer").value()) ? "chosen " : "none ";
              }),
      noticed("customer: contracts anew", &W::customer,
              [](auto& customer, W&) { return customer.detailsClosed(), ""; }),
      noticed(
          "customer: addresses back", &W::customer,
          [](auto& customer, W& w) { return customer.kind().addresses->takeAddresses(*w.addresses), ""; }),
      saving("customer is saved", &W::customer),
      saving("contract is saved", &W::contract),
      saving("order is saved", &W::order),
      noticed("contract is deleted", &W::contract,
              [](auto& contract, W&) { return contract.erase() ? "gone " : "stays "; }),
      noticed("addresses: number", &W::addresses,
              [](auto& addresses, W&) {
                addresses.type(addresses.find("txtVS_AdrNr").value(), "8");
                addresses.leave(addresses.find("txtVS_AdrNr").value());
                return "";
              }),
      noticed("addresses: lookup", &W::addresses,
              [](auto& addresses, W&) {
                return addresses.lookUp(addresses.find("txtVS_AdrNr").value()) ? "chosen " : "none ";
              }),
      {"options are read",
       [](W& w) {
         w.options.load();
         return w.options.notice();
       }},
      {"day is proposed", [](W& w) { return germanDate(w.deletion.proposedDate()); }},
      {"day is confirmed",
       [](W& w) { return std::string(w.deletion.confirmedDate("01.12.2026") ? "yes" : "no"); }},
  };
  return all;
}

class PresenterMembers : public DialogTest {
protected:
  PresenterMembers() {
    erp.setOption("AppSettings", "1");
    erp.setOption("Löschen", "1");
    erp.desktop.answer = true;
    erp.desktop.file = (erp.folder.path() / "jobs.edi").string();
    chosen = {"20001"};
  }

  /// The same jobs before each step.
  void restage() {
    erp.environment.session->Connect("", "");
    std::filesystem::remove(*erp.desktop.file);
    WorkUnit unit(connection());
    for (const Sql& clearing : {sql("Delete From ImportKopf"_sql), sql("Delete From ImportPos"_sql),
                                sql("Delete From LockControl"_sql), sql("Delete From Auftragskopf"_sql)})
      connection().execute(clearing);
    stageCustomer("C1", "20001");
    stageContract("V1");
    stageOrder("O1");
    stagePosition("O1", 1, "A100", 2);
    stageOrder("D1", {{"JobType", qxtJobAufträgeDone}});
    unit.commit();
  }
  /// What the clerk sees of a step, the boxes and reports after it; what leaves it is a fault.
  std::string outcome(OpenWindows& windows, const Step& step) {
    erp.desktop.shown.clear();
    windows.host.reports.clear();
    std::string result;
    try {
      result = step.run(windows);
    } catch (const std::exception& error) {
      ADD_FAILURE() << step.name << " lets out: " << error.what();
      return error.what();
    }
    for (const Message& box : erp.desktop.shown) result += "|" + box.text;
    return result + windows.host.reports;
  }
};

struct Situation {
  std::string_view cause;    ///< in the words for clerks
  std::string_view checking; ///< the same where the list is checked
};
constexpr std::array situations{
    Situation{"Es ist keine Datenbank verbunden.", "Bitte geben Sie eine Connection an."},
    Situation{"Die Datenbank kann nicht gelesen oder geschrieben werden.",
              "Die Datenbank kann nicht gelesen oder geschrieben werden."},
    Situation{"Die Datenbank hat das abgelehnt.", "Die Datenbank hat das abgelehnt."}};

/// '%' stands for the cause, '#' for that of checking the list.
std::string filledIn(std::string_view pattern, const Situation& situation) {
  std::string text;
  for (const char c : pattern)
    if (c == '%')
      text += situation.cause;
    else if (c == '#')
      text += situation.checking;
    else
      text += c;
  return text;
}

struct Outcome {
  std::string_view step;
  std::string_view stated;
};

constexpr std::string_view unchecked = "Die Prüfung ist nicht möglich: %";
constexpr std::string_view unread = "unread Die Prüfung ist nicht möglich: %";
constexpr std::string_view unmarked =
    "Die Prüfung ist nicht möglich: %|Fehler beim Kennzeichnen der Verträge: %";
constexpr std::string_view unsaved =
    "open Fehler beim Speichern der Daten: %|Fehler beim Speichern der Daten";
constexpr std::string_view listUnchecked = "list gone|Fehler beim Prüfen der Importvorgänge: #";

/// Where the connection does not work. A step that is not named shows what it shows otherwise.
constexpr std::array withoutDatabase{
    Outcome{"view is made", listUnchecked},
    Outcome{"details", "Der Vorgang konnte nicht gelesen werden."},
    Outcome{"head is clicked", "list gone"},
    Outcome{"row is opened", listUnchecked},
    Outcome{"delete by date", "list gone"},
    Outcome{"check", listUnchecked},
    Outcome{"import",
            "list gone|Beim Importieren der Daten sind Fehler aufgetreten, es konnten evtl. nicht alle "
            "Daten importiert werden.|Fehler beim Prüfen der Importvorgänge: #"},
    Outcome{"export",
            "|Beim Exportieren der Daten sind Fehler aufgetreten, es konnten evtl. nicht alle Daten "
            "exportiert werden."},
    Outcome{"filter", "list gone"},
    Outcome{"customer is opened", unread},
    Outcome{"contract is opened", unread},
    Outcome{"order is opened", unread},
    Outcome{"any job is opened", "none|%"},
    Outcome{"customer: number", unmarked},
    Outcome{"customer: bank", unchecked},
    Outcome{"contract: object", unchecked},
    Outcome{"order: customer", unchecked},
    Outcome{"order: article", unchecked},
    Outcome{"order: details", ""},
    Outcome{"order: lookup", "chosen Die Prüfung ist nicht möglich: %"},
    Outcome{"customer: contracts anew", unmarked},
    Outcome{"customer: addresses back", "Die Prüfung ist nicht möglich: %"},
    Outcome{"customer is saved", unsaved},
    Outcome{"contract is saved", unsaved},
    Outcome{"order is saved", unsaved},
    Outcome{"contract is deleted",
            "stays Fehler beim Löschen des Vorgangs: %|Fehler beim Löschen des Vorgangs"},
    Outcome{"day is confirmed", "no|Die erledigten Vorgänge können nicht gelesen werden: %"},
    Outcome{"addresses: number", "Die Stammadresse kann nicht gelesen werden: %"},
};

struct Consequence {
  std::string_view step;
  std::string_view fault;
  std::string_view stated;
};

constexpr std::string_view someUnread =
    "Einige Optionen konnten nicht gelesen werden; sie sind gesperrt und bleiben, wie sie sind.";

/// Where a component raises. One that is not named costs an entry in the diagnostics only.
constexpr std::array consequences{
    Consequence{"import", "Desktop.chooseFile", ""},
    Consequence{"import", "Desktop.show", ""},
    Consequence{"order is opened", "Preisfindung.GetVKPreis",
                "read Die Prüfung ist nicht möglich: Preisfindung.GetVKPreis fails"},
    Consequence{"order: article", "Preisfindung.GetVKPreis",
                "Die Prüfung ist nicht möglich: Preisfindung.GetVKPreis fails"},
    Consequence{"order: lookup", "ErpComponents.createAuskunft", "none "},
    Consequence{"contract is deleted", "Desktop.ask", "stays "},
    Consequence{"day is confirmed", "Desktop.ask", "no"},
    Consequence{"options are read", "LocalSettings.read", someUnread},
    Consequence{"options are read", "Session.GetSetting", someUnread},
};

TEST_F(PresenterMembers, ShowWhatIsWrongOnAConnectionThatDoesNotWork) {
  for (const Step& step : steps()) {
    restage();
    std::string stated;
    {
      OpenWindows windows(erp);
      windows.openAll();
      stated = outcome(windows, step);
    }
    const auto* const found = std::ranges::find(withoutDatabase, step.name, &Outcome::step);
    if (found != withoutDatabase.end()) stated = found->stated;
    for (const Situation& situation : situations) {
      SCOPED_TRACE(std::string(step.name) + ": " + std::string(situation.cause));
      restage();
      OpenWindows windows(erp);
      const auto connection = std::make_shared<RecordingConnection>(erp.database);
      const auto stand = [&](std::shared_ptr<Connection> next) {
        windows.world.session->replaced = true;
        windows.world.session->replacement = next;
        windows.world.environment.connection = std::move(next);
      };
      stand(connection);
      windows.openAll();
      connection->refusing = true;
      if (&situation == &situations[0]) stand(nullptr);
      if (&situation == &situations[1]) stand(std::make_shared<ClosedConnection>());
      EXPECT_EQ(outcome(windows, step), filledIn(stated, situation));
    }
  }
}

TEST_F(PresenterMembers, LetNoFailureOfAComponentOut) {
  std::size_t met = 0;
  for (const Step& step : steps()) {
    std::string healthy;
    std::set<std::string> reached;
    restage();
    {
      OpenWindows windows(erp);
      windows.openAll();
      windows.world.fault.reached.clear();
      healthy = outcome(windows, step);
      reached = windows.world.fault.reached;
    }
    for (const std::string& fault : reached) {
      SCOPED_TRACE(std::string(step.name) + " where " + fault + " raises");
      restage();
      OpenWindows windows(erp);
      windows.openAll();
      windows.world.fault.failing = fault;
      erp.diagnostics.entries.clear();
      const std::string result = outcome(windows, step);
      const auto* const stated = std::ranges::find_if(consequences, [&](const Consequence& each) {
        return each.step == step.name && each.fault == fault;
      });
      if (stated != consequences.end()) ++met;
      EXPECT_EQ(result, stated == consequences.end() ? healthy : stated->stated);
      EXPECT_THAT(erp.diagnostics.text(), ::testing::HasSubstr(fault + " fails"));
    }
  }
  EXPECT_EQ(met, consequences.size()) << "a consequence is stated for a component that is not asked";
}

} // namespace
} // namespace qx
