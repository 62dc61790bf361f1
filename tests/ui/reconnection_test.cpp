// Windows whose server goes away and comes back.
#include "dialog_fixture.h"

#include "support/breakable_way.h"
#include "ui/job_view_presenter.h"
#include "ui/options_dialog_presenter.h"

namespace qx {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ServerReconnection : public BreakableWay, public DialogTest {
protected:
  std::string question(std::size_t index) const {
    return index < erp.desktop.asked.size() ? erp.desktop.asked[index].text : "";
  }
};

/// A window without dialogs.
class BareWindow final : public JobViewHost {
public:
  DialogEnd openJob(std::string_view /*jobId*/, const JobPlace& /*place*/) override {
    return DialogEnd::Closed;
  }
  void options() override {}
  void deleteDate() override {}
  void about() override {}
  void report(std::string_view /*title*/, std::string_view /*text*/) override {}
  void showCurrent() override {}
  void redraw() override {}
  void closeWindow() override {}
};

constexpr std::string_view lost =
    "Die Verbindung zur Datenbank ist unterbrochen. Ihre Eingaben bleiben erhalten.\r\n"
    "Soll die Verbindung wieder aufgebaut werden?";

TEST_F(ServerReconnection, ADialogOffersItKeepsTheInputAndSavesWhenTheServerIsBack) {
  stageCustomer("K1", "99999");
  const auto dialog = opened("K1");
  enter(*dialog, "txtBez1", "Neue Firma");
  proxy.set(ServerProxy::State::Gone);
  EXPECT_FALSE(dialog->save());
  ASSERT_EQ(erp.desktop.asked.size(), 1U);
  EXPECT_EQ(question(0), lost);
  EXPECT_THAT(erp.desktop.shown, IsEmpty());
  EXPECT_EQ(
      dialog->notice(),
      "Die Datenbank ist nicht erreichbar. Ihre Eingaben stehen noch hier; es wurde nichts gespeichert.");
  EXPECT_EQ(state(*dialog, "txtBez1").text, "Neue Firma");

  erp.desktop.answer = true;
  whileItComesBack([&] { EXPECT_TRUE(dialog->save()) << dialog->notice(); });
  EXPECT_EQ(question(1), lost);
  EXPECT_EQ(question(2), "Die Datenbank ist noch nicht erreichbar. Ihre Eingaben bleiben erhalten.\r\n"
                         "Soll es noch einmal versucht werden?");
  EXPECT_EQ(field("K1", "Bez1"), Value("Neue Firma"));

  erp.desktop.asked.clear();
  enter(*dialog, "txtBez1", "Neueste Firma");
  cut();
  EXPECT_TRUE(dialog->save()) << dialog->notice();
  EXPECT_THAT(erp.desktop.asked, IsEmpty()) << "a server that can be reached is no question";
  EXPECT_EQ(field("K1", "Bez1"), Value("Neueste Firma"));
}

TEST_F(ServerReconnection, ADialogWhoseSavingIsNotConfirmedSaysSoAndIsReadAnew) {
  constexpr std::string_view unknown = "Die Verbindung zur Datenbank brach ab, bevor sie die Änderungen "
                                       "bestätigt hat. Es ist nicht bekannt, ob sie "
                                       "gespeichert sind.";
  stageCustomer("K1", "99999");
  const auto dialog = opened("K1");
  enter(*dialog, "txtBez1", "Neue Firma");
  proxy.loseAnswerTo("Commit");
  EXPECT_FALSE(dialog->save());
  EXPECT_EQ(question(0), std::string(unknown) +
                             "\r\nSoll der Vorgang neu gelesen werden? Was nicht gespeichert ist, "
                             "geht dabei verloren.");
  EXPECT_THAT(erp.desktop.shown, IsEmpty());
  EXPECT_EQ(dialog->notice(), unknown);
  EXPECT_FALSE(dialog->readAnewAsked()) << "who declines keeps the input";
  EXPECT_EQ(state(*dialog, "txtBez1").text, "Neue Firma");
  EXPECT_EQ(field("K1", "Bez1"), Value("Neue Firma")) << "the server has written it";

  const auto again = opened("K1");
  EXPECT_EQ(state(*again, "txtBez1").text, "Neue Firma");
  enter(*again, "txtBez1", "Neueste Firma");
  proxy.loseAnswerTo("Commit");
  erp.desktop.answer = true;
  EXPECT_FALSE(again->save());
  EXPECT_TRUE(again->readAnewAsked());
}

TEST_F(ServerReconnection, ADialogThatHadToGiveWaySavesAgainAndThenSaysWhyNot) {
  execute("Create Sequence Konflikte"_sql);
  execute("Create Function nachgeben() Returns trigger Language plpgsql As $$ Begin "
          "If nextval('Konflikte') > 0 Then Raise Exception 'another was first' Using Errcode = '40001'; "
          "End If; Return Null; End $$"_sql);
  stageCustomer("K1", "99999");
  execute("Create Trigger Konflikt After Update On ImportKopf For Each Statement Execute Function "
          "nachgeben()"_sql);
  const auto dialog = opened("K1");
  enter(*dialog, "txtBez1", "Neue Firma");
  EXPECT_FALSE(dialog->save());
  EXPECT_EQ(
      dialog->notice(),
      "Fehler beim Speichern der Daten: Andere Programme haben bei jedem Versuch zur selben Zeit dieselben "
      "Daten geändert.");
  EXPECT_EQ(field("K1", "Bez1"), Value("Firma 99999"));
  execute("Alter Sequence Konflikte Restart"_sql);
  execute("Create Or Replace Function nachgeben() Returns trigger Language plpgsql As $$ Begin "
          "If nextval('Konflikte') < 4 Then Raise Exception 'another was first' Using Errcode = '40001'; "
          "End If; Return Null; End $$"_sql);
  EXPECT_TRUE(dialog->save()) << dialog->notice();
  EXPECT_EQ(field("K1", "Bez1"), Value("Neue Firma"));
}

TEST_F(ServerReconnection, TheListStaysUntilTheServerIsBackAndTheWindowCanBeClosedMeanwhile) {
  stageCustomer("K1", "99999");
  erp.setOption("AppSettings", "1");
  BareWindow window;
  JobViewPresenter view(erp.environment, engine, window);
  view.create();
  view.load();
  proxy.set(ServerProxy::State::Gone);
  view.command(Tool::ProcessTransactions);
  EXPECT_EQ(question(0), lost);
  EXPECT_THAT(view.state().notice, HasSubstr("Die Datenbank ist nicht erreichbar."));
  EXPECT_EQ(view.state().rows.size(), 1U);
  const auto asked = erp.desktop.asked.size();
  view.timerTick();
  EXPECT_EQ(erp.desktop.asked.size(), asked);

  erp.desktop.answer = true;
  whileItComesBack([&] { view.key(JobViewKey::F5); });
  EXPECT_FALSE(view.state().databaseGone);
  view.command(Tool::ProcessTransactions);
  EXPECT_EQ(jobType("K1"), 13);

  erp.desktop.answer = false;
  proxy.set(ServerProxy::State::Gone);
  EXPECT_TRUE(view.close({}));
  proxy.set(ServerProxy::State::Open);
}

TEST_F(ServerReconnection, TheOptionsStayInTheirWindowUntilTheyCanBeStored) {
  OptionsDialogPresenter options(erp.environment);
  options.load();
  proxy.set(ServerProxy::State::Gone);
  EXPECT_FALSE(options.close());
  EXPECT_EQ(question(0), lost);
  erp.desktop.answer = true;
  whileItComesBack([&] { EXPECT_TRUE(options.close()); });
  EXPECT_EQ(
      text("Select Value From Einstellungen Where Section = 'ImportJob2' And \"key\" = 'AppSettings'"_sql),
      "1");
}

} // namespace
} // namespace qx
