// What a run does when the database refuses or takes back single rows, when jobs disappear, when it is busy
// and when memory is short; and that the next run completes what was left.
#include "order_fixture.h"

#include "adapters/sqlite/sqlite_database.h"

#include <gmock/gmock.h>

#include <map>
#include <new>

namespace qx {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;

class RunFailures : public OrderTest {
protected:
  void stageMany(int count) {
    WorkUnit unit(connection());
    for (int i = 1; i <= count; ++i) stageCustomer("J" + std::to_string(i), std::to_string(70000 + i));
    unit.commit();
  }
  std::int64_t done() { return count(sql("Select Count(*) From ImportKopf Where JobType = 13"_sql)); }
  /// Numbers that have more than one customer, line or index entry.
  std::int64_t doubled() {
    return count(
        sql("Select (Select Count(*) From (Select 1 From Kundenstamm Group By Kundennummer Having "
            "Count(*) > 1)) + (Select Count(*) From (Select 1 From Protokollpositionen Where Text2 = "
            "'Erledigt' Group By Text1 Having Count(*) > 1))"_sql));
  }
  void becomeHost() {
    erp.environment.connection = SqliteDatabase::openAsHost(connection().connectionString());
  }
  std::map<std::string, std::string> left() { return engine.lastRun().left; }
};

TEST_F(RunFailures, AJobThatCannotBeMarkedIsLeftWaitingAndTheOthersAreWrittenOnce) {
  for (const bool takesTheUnitAlong : {false, true}) {
    connection().execute(sql("Delete From ImportKopf"_sql));
    connection().execute(sql("Delete From Kundenstamm Where Kundennummer Like '7%'"_sql));
    connection().execute(sql("Delete From Protokollpositionen"_sql));
    stageMany(120);
    if (takesTheUnitAlong)
      connection().execute(sql("CREATE TRIGGER freeze BEFORE UPDATE ON ImportKopf WHEN new.JobID = 'J110' "
                               "BEGIN SELECT RAISE(ROLLBACK, 'Vorgang gesperrt'); END"_sql));
    else
      connection().execute(sql("CREATE TRIGGER freeze BEFORE UPDATE ON ImportKopf WHEN new.JobID = 'J110' "
                               "BEGIN SELECT RAISE(ABORT, 'Vorgang gesperrt'); END"_sql));
    EXPECT_TRUE(run());
    EXPECT_EQ(engine.lastRun().end, RunEnd::Completed);
    EXPECT_THAT(left(), ElementsAre(std::pair("J110", "Vorgang gesperrt")));
    EXPECT_THAT(erp.diagnostics.text(), HasSubstr("the job is left waiting: Vorgang gesperrt | J110"));
    EXPECT_EQ(jobType("J110"), 10);
    EXPECT_EQ(reasons("J110"), "");
    EXPECT_EQ(count(sql("Select Count(*) From Kundenstamm Where Kundennummer = '70110'"_sql)), 0);
    EXPECT_EQ(done(), 119);
    EXPECT_EQ(engine.lastRun().processed, 119U);
    EXPECT_EQ(outcomes.size(), 119U);
    EXPECT_EQ(protocolLines(), 119);
    EXPECT_EQ(engine.strGlobalProcErr,
              "Die Datenbank lehnt es ab, den Vorgang 'J110' zu ändern: Vorgang gesperrt");
    EXPECT_THAT(erp.desktop.shown, IsEmpty());
    connection().execute(sql("Drop Trigger freeze"_sql));
    EXPECT_TRUE(run());
    EXPECT_THAT(left(), IsEmpty());
    EXPECT_EQ(done(), 120);
    EXPECT_EQ(protocolLines(), 120);
    EXPECT_EQ(doubled(), 0);
  }
}

TEST_F(RunFailures, EvenATableThatRefusesEveryMarkEndsNoRun) {
  stageMany(3);
  connection().execute(sql("CREATE TRIGGER freeze BEFORE UPDATE ON ImportKopf "
                           "BEGIN SELECT RAISE(ABORT, 'nur lesen'); END"_sql));
  EXPECT_TRUE(run());
  EXPECT_EQ(left().size(), 3U);
  EXPECT_EQ(count(sql("Select Count(*) From Kundenstamm Where Kundennummer Like '7%'"_sql)), 0);
  EXPECT_EQ(protocolLines(), 0);
  EXPECT_EQ(events.progress.back(), 100);
}

TEST_F(RunFailures, OnAHostsConnectionAJobThatCannotBeMarkedIsLeftTheSameWay) {
  stageOrder("O1");
  stagePosition("O1", 1, "A100", 1);
  stageOrder("O2");
  stagePosition("O2", 1, "A100", 1);
  connection().execute(sql("CREATE TRIGGER freeze BEFORE UPDATE ON ImportKopf WHEN new.JobID = 'O1' "
                           "BEGIN SELECT RAISE(ABORT, 'zu kurz'); END"_sql));
  becomeHost();
  EXPECT_TRUE(run());
  EXPECT_THAT(left(), ElementsAre(std::pair("O1", "zu kurz")));
  EXPECT_EQ(jobType("O1"), 30);
  EXPECT_EQ(jobType("O2"), 33);
  EXPECT_EQ(orders(), 1);
  connection().execute(sql("Drop Trigger freeze"_sql));
  EXPECT_TRUE(run());
  EXPECT_EQ(jobType("O1"), 33);
  EXPECT_EQ(orders(), 2);
  EXPECT_EQ(count(sql("Select Count(Distinct Auftragsnummer) From Auftragspos"_sql)), 2);
  EXPECT_THAT(protocol(), UnorderedElementsAre("Auftrag|1|Erledigt", "Auftrag|2|Erledigt"));
}

TEST_F(RunFailures, AJobThatDisappearsWhileItIsProcessedIsPassedOver) {
  for (const bool host : {false, true}) {
    connection().execute(sql("Delete From ImportKopf"_sql));
    connection().execute(sql("Delete From Protokollpositionen"_sql));
    if (host) becomeHost();
    stageMany(3);
    const auto other = erp.secondConnection();
    events.onInfo = [&](std::string_view info) {
      if (info.find("70002") == std::string_view::npos) return;
      if (host)
        other->execute(sql("Delete From ImportKopf Where JobID = 'J2'"_sql));
      else
        engine.DelItem("J2");
    };
    EXPECT_TRUE(run());
    EXPECT_EQ(engine.lastRun().end, RunEnd::Completed);
    EXPECT_THAT(left(), IsEmpty());
    EXPECT_EQ(done(), 2);
    EXPECT_EQ(outcomes.size(), 2U);
    EXPECT_THAT(protocol(), ElementsAre("Kunden|70001|Erledigt", "Kunden|70003|Erledigt"));
    EXPECT_EQ(engine.strGlobalProcErr, "");
    EXPECT_THAT(erp.diagnostics.text(), HasSubstr("was deleted while it was processed"));
  }
}

TEST_F(RunFailures, ALineOrIndexEntryThatTakesTheJobAlongIsGivenUpAlone) {
  stageMany(5);
  connection().execute(
      sql("CREATE TRIGGER line BEFORE INSERT ON Protokollpositionen WHEN new.Text1 = '70002' "
          "BEGIN SELECT RAISE(ROLLBACK, 'Zeile'); END"_sql));
  connection().execute(
      sql("CREATE TRIGGER entry BEFORE INSERT ON Adressindex WHEN new.Kundennummer = '70004' "
          "BEGIN SELECT RAISE(ROLLBACK, 'Index'); END"_sql));
  EXPECT_TRUE(run());
  EXPECT_EQ(done(), 5);
  EXPECT_EQ(engine.lastRun().done, 5U);
  EXPECT_EQ(engine.lastRun().protocolErrors, 2U);
  EXPECT_EQ(erp.desktop.texts(), "Fehler beim Erzeugen der Protokollzeile. Die Datenbank hat die Änderungen "
                                 "zurückgenommen.\n");
  EXPECT_THAT(protocol(), ElementsAre("Kunden|70001|Erledigt", "Kunden|70003|Erledigt",
                                      "Kunden|70004|Erledigt", "Kunden|70005|Erledigt"));
  EXPECT_EQ(
      count(sql("Select Count(Distinct Kundennummer) From Adressindex Where Kundennummer Like '7%'"_sql)), 4);
  EXPECT_EQ(doubled(), 0);
}

TEST_F(RunFailures, AFailedJobKeepsItsMarkWhenItsLineTakesItAlong) {
  stageMany(3);
  connection().execute(sql("CREATE TRIGGER lose BEFORE INSERT ON Kundenstamm WHEN new.Kundennummer = '70002' "
                           "BEGIN SELECT RAISE(ROLLBACK, 'Satz'); END"_sql));
  connection().execute(
      sql("CREATE TRIGGER line BEFORE INSERT ON Protokollpositionen WHEN new.Text1 = '70002' "
          "BEGIN SELECT RAISE(ROLLBACK, 'Zeile'); END"_sql));
  EXPECT_TRUE(run());
  EXPECT_EQ(done(), 2);
  EXPECT_EQ(jobType("J2"), 12);
  EXPECT_EQ(reasons("J2"), "Satz");
  EXPECT_EQ(engine.lastRun().protocolErrors, 1U);
  EXPECT_EQ(protocolLines(), 2);
}

TEST_F(RunFailures, AGroupThatIsLostUnnoticedIsTakenAgain) {
  /// Loses the unit once; what its statement raises is trapped, as that of every observer.
  struct Loser final : EngineEvents {
    explicit Loser(Connection& connection) : connection_(connection) {}
    void JobViewUnload() override {}
    void ProcessProgress(std::int16_t percent) override {
      if (percent == 67) connection_.execute(sql("Update Vertreter Set Bez1 = 'weg'"_sql));
    }
    void ProcessInfo(std::string_view) override {}
    Connection& connection_;
  } loser(connection());
  const Subscription handle = engine.subscribe(loser);
  connection().execute(sql("CREATE TRIGGER lose BEFORE UPDATE ON Vertreter "
                           "BEGIN SELECT RAISE(ROLLBACK, 'verloren'); END"_sql));
  stageMany(3);
  EXPECT_TRUE(run());
  EXPECT_EQ(done(), 3);
  EXPECT_EQ(engine.lastRun().done, 3U);
  EXPECT_EQ(protocolLines(), 3);
  EXPECT_EQ(doubled(), 0);
}

TEST_F(RunFailures, AReleasedJobThatCannotBeResetIsNamedAndTheRunGoesOn) {
  const auto parked = [](KundeFields& job) { job.JobType = 12; };
  stageCustomer("R1", "70001", parked);
  stageCustomer("R2", "70002", parked);
  stageCustomer("J3", "70003");
  release("R1");
  release("R2");
  connection().execute(sql("CREATE TRIGGER freeze BEFORE UPDATE ON ImportKopf WHEN old.JobID = 'R1' "
                           "BEGIN SELECT RAISE(ROLLBACK, 'Vorgang gesperrt'); END"_sql));
  EXPECT_TRUE(run());
  EXPECT_THAT(left(), ElementsAre(std::pair("R1", "Vorgang gesperrt")));
  EXPECT_EQ(jobType("R1"), 12);
  EXPECT_EQ(done(), 2);
  connection().execute(sql("Drop Trigger freeze"_sql));
  EXPECT_TRUE(run());
  EXPECT_EQ(done(), 3);
  EXPECT_THAT(protocol(),
              ElementsAre("Kunden|70002|Erledigt", "Kunden|70003|Erledigt", "Kunden|70001|Erledigt"));
}

TEST_F(RunFailures, AContractThatCannotBePreparedFailsAndIsNotWrittenEmpty) {
  erp::TableFiller(connection(), "Vertragsarten").add({{"Vertragsart", "WA"}, {"Kurztext", "Wartung"}});
  erp::TableFiller(connection(), "Vertragsgegenstände")
      .add({{"VertrGegenstandsNr", "G1"}, {"Bez", "Anlage"}});
  erp::TableFiller(connection(), "VertragsGegenständePos")
      .add({{"VertrGegenstandsNr", "G1"}, {"Vertragsart", "WA"}});
  const auto stage = [&](const char* key, const char* number) {
    Vertrag job(erp.environment);
    job.JobID = key;
    job.Kundennummer = "20001";
    job.Vertragsnummer = number;
    job.Zustand = "I"; // what is not checked would be written with empty values
    writeStaged(connection(), static_cast<const VertragFields&>(job));
    ImportJobSubItem position;
    position.JobID = key;
    position.ChildID = std::string("P") + key;
    position.JobType = 1001;
    position.Menge = 3;
    position.Artikelnummer = "G1";
    position.Vertragsart = "WA";
    writeStaged(connection(), position);
  };
  for (const bool takesTheUnitAlong : {false, true}) {
    connection().execute(sql("Delete From ImportKopf"_sql));
    connection().execute(sql("Delete From ImportPos"_sql));
    connection().execute(sql("Delete From Verträge"_sql));
    connection().execute(sql("Delete From Protokollpositionen"_sql));
    stage("V1", "1");
    stage("V2", "2");
    if (takesTheUnitAlong)
      connection().execute(sql("CREATE TRIGGER keep BEFORE DELETE ON ImportPos WHEN old.JobID = 'V1' "
                               "BEGIN SELECT RAISE(ROLLBACK, 'Position gesperrt'); END"_sql));
    else
      connection().execute(sql("CREATE TRIGGER keep BEFORE DELETE ON ImportPos WHEN old.JobID = 'V1' "
                               "BEGIN SELECT RAISE(ABORT, 'Position gesperrt'); END"_sql));
    EXPECT_TRUE(run());
    EXPECT_EQ(jobType("V1"), 22);
    EXPECT_EQ(reasons("V1"), "Position gesperrt");
    EXPECT_EQ(jobType("V2"), 23);
    EXPECT_THAT(protocol(), ElementsAre("Vertrag|1|Fehler", "Vertrag|2|Erledigt"));
    EXPECT_EQ(erp.text(sql("Select Group_Concat(VertrGegenstandsNr) From Verträge"_sql)), "G1");
    EXPECT_EQ(erp.text(sql("Select Group_Concat(JobID) From ImportPos"_sql)), "V1");
    connection().execute(sql("Drop Trigger keep"_sql));
    connection().execute(sql("Update ImportKopf Set JobType = 20 Where JobID = 'V1'"_sql));
    EXPECT_TRUE(run());
    EXPECT_EQ(jobType("V1"), 23);
    EXPECT_EQ(erp.text(sql("Select Group_Concat(VertrGegenstandsNr) From Verträge"_sql)), "G1,G1");
  }
}

TEST_F(RunFailures, AJobThatThePurgeCannotTakeAwayStaysAlone) {
  erp.setOption("KundeDelete", "1");
  stageMany(5);
  connection().execute(sql("CREATE TRIGGER keep BEFORE DELETE ON ImportKopf WHEN old.JobID = 'J3' "
                           "BEGIN SELECT RAISE(ROLLBACK, 'bleibt'); END"_sql));
  EXPECT_TRUE(run());
  EXPECT_EQ(engine.lastRun().end, RunEnd::Completed);
  EXPECT_EQ(engine.lastRun().done, 5U);
  EXPECT_EQ(erp.text(sql("Select Group_Concat(JobID) From ImportKopf"_sql)), "J3");
  EXPECT_THAT(erp.diagnostics.text(), HasSubstr("purge | bleibt | J3"));
}

TEST_F(RunFailures, AStopEndsThePurgeBeforeItsNextJob) {
  erp.setOption("KundeDelete", "1");
  stageMany(5);
  events.onInfo = [this](std::string_view info) {
    if (info.starts_with("Archivdaten")) engine.requestStop();
  };
  EXPECT_TRUE(run());
  EXPECT_EQ(engine.lastRun().end, RunEnd::Stopped);
  EXPECT_EQ(engine.lastRun().stillWaiting, 0U);
  EXPECT_EQ(done(), 5);
}

TEST_F(RunFailures, AProtocolThatCannotBeRemovedStaysWhole) {
  customerSpecific();
  stageCustomer("J1", "20001");
  connection().execute(sql("CREATE TRIGGER keep BEFORE DELETE ON Protokolle "
                           "BEGIN SELECT RAISE(ROLLBACK, 'bleibt'); END"_sql));
  EXPECT_TRUE(run());
  EXPECT_EQ(engine.lastRun().protocolId, erp.text(sql("Select ID From Protokolle"_sql)));
  EXPECT_THAT(protocol(), ElementsAre("Kunden|20001|Erledigt"));
}

TEST_F(RunFailures, AProtocolWhoseIdentityCannotBeKeptCostsTheProtocolAlone) {
  stageMany(2);
  connection().execute(sql("CREATE TRIGGER lose BEFORE INSERT ON Einstellungen WHEN new.Key = 'ProtoID' "
                           "BEGIN SELECT RAISE(ROLLBACK, 'gesperrt'); END"_sql));
  EXPECT_TRUE(run());
  EXPECT_EQ(done(), 2);
  EXPECT_EQ(engine.lastRun().protocolId, "");
  EXPECT_EQ(count(sql("Select Count(*) From Protokolle"_sql)), 0);
  EXPECT_THAT(erp.desktop.texts(),
              StartsWith("Verarbeitungsprotokoll konnte nicht erzeugt werden. Die Datenbank "
                         "hat die Änderungen zurückgenommen.\n"));
}

TEST_F(RunFailures, ARunWaitsForABusyDatabaseAlsoWhileItsProtocolIsMade) {
  stageMany(2);
  const auto other = erp.secondConnection();
  other->beginWork(nullptr);
  constexpr std::string_view waiting =
      "Die Datenbank wird von einem anderen Programm benutzt. Es wird gewartet...";
  events.onInfo = [&](std::string_view info) {
    if (info == waiting) engine.requestStop();
  };
  EXPECT_TRUE(run());
  EXPECT_EQ(engine.lastRun().end, RunEnd::Stopped);
  EXPECT_EQ(engine.lastRun().stillWaiting, 2U);
  EXPECT_THAT(erp.desktop.shown, IsEmpty());

  events.onInfo = [&](std::string_view info) {
    if (info == waiting) other->rollbackWork();
  };
  EXPECT_TRUE(run());
  EXPECT_EQ(engine.lastRun().end, RunEnd::Completed);
  EXPECT_EQ(done(), 2);
  EXPECT_EQ(protocolLines(), 2);
  EXPECT_EQ(engine.ImpGetSetting("QXImportJob", "ImportJob2", "ProtoID"), engine.lastRun().protocolId);
  EXPECT_THAT(erp.desktop.shown, IsEmpty());
}

// Memory that is short.

/// The ERP's components, of which one raises for a certain text while it lasts.
class ShortComponents final : public ErpComponents {
public:
  explicit ShortComponents(ErpComponents& erp) : erp_(erp) {}

  std::string indexOf; ///< the customer whose index entry fails
  std::string lineOf;  ///< the number whose protocol line fails
  std::string priceOf; ///< the article whose price fails
  bool versionShort = false;

  std::shared_ptr<Session> createSession() override { return erp_.createSession(); }
  std::unique_ptr<Einkaufspreisfindung> createEinkaufspreisfindung(Connection& connection) override {
    return erp_.createEinkaufspreisfindung(connection);
  }
  std::unique_ptr<Version> createVersion() override {
    if (versionShort) throw std::bad_alloc();
    return erp_.createVersion();
  }
  std::unique_ptr<Profile> createProfile() override { return erp_.createProfile(); }
  std::unique_ptr<FibuUebergabe> createFibuUebergabe() override { return erp_.createFibuUebergabe(); }
  std::unique_ptr<Auskunft> createAuskunft() override { return erp_.createAuskunft(); }
  std::unique_ptr<Adressindex> createAdressindex(Connection& connection) override {
    struct Index final : Adressindex {
      Index(std::unique_ptr<Adressindex> index, const std::string& shortAt)
          : index_(std::move(index)), shortAt_(shortAt) {}
      void CreateIndex(std::string_view customer, std::int16_t kind) override {
        if (customer == shortAt_) throw std::bad_alloc();
        index_->CreateIndex(customer, kind);
      }
      std::unique_ptr<Adressindex> index_;
      const std::string& shortAt_;
    };
    return std::make_unique<Index>(erp_.createAdressindex(connection), indexOf);
  }
  std::unique_ptr<Protokoll> createProtokoll() override {
    struct Lines final : Protokoll {
      Lines(std::unique_ptr<Protokoll> lines, const std::string& shortAt)
          : lines_(std::move(lines)), shortAt_(shortAt) {}
      std::string CreateProtokoll(Connection& connection, std::string_view title, std::string_view kind,
                                  std::string_view list) override {
        return lines_->CreateProtokoll(connection, title, kind, list);
      }
      bool OpenProtokoll(Connection& connection, std::string_view id) override {
        return lines_->OpenProtokoll(connection, id);
      }
      void AddNewRecord() override { lines_->AddNewRecord(); }
      void SetField(int kind, int column, std::string_view value) override {
        if (column == 1 && value == shortAt_) throw std::bad_alloc();
        lines_->SetField(kind, column, value);
      }
      void UpdateRecord() override { lines_->UpdateRecord(); }
      std::unique_ptr<Protokoll> lines_;
      const std::string& shortAt_;
    };
    return std::make_unique<Lines>(erp_.createProtokoll(), lineOf);
  }
  std::unique_ptr<Preisfindung> createPreisfindung() override {
    struct Prices final : Preisfindung {
      Prices(std::unique_ptr<Preisfindung> prices, const std::string& shortAt)
          : prices_(std::move(prices)), shortAt_(shortAt) {}
      void setConnection(Connection& connection) override { prices_->setConnection(connection); }
      void Init() override { prices_->Init(); }
      void Init(Connection& connection) override { prices_->Init(connection); }
      std::int32_t GetVKPreis(const PriceQuestion& question, SalesPrice& found) override {
        if (question.article == shortAt_) throw std::bad_alloc();
        return prices_->GetVKPreis(question, found);
      }
      double GetGesamtRabattWert(const StagedDiscounts& discounts, double amount) override {
        return prices_->GetGesamtRabattWert(discounts, amount);
      }
      double GetGesamtRabattSatz(const StagedDiscounts& discounts) override {
        return prices_->GetGesamtRabattSatz(discounts);
      }
      std::unique_ptr<Preisfindung> prices_;
      const std::string& shortAt_;
    };
    return std::make_unique<Prices>(erp_.createPreisfindung(), priceOf);
  }

private:
  ErpComponents& erp_;
};

class ShortMemory : public RunFailures {
protected:
  bool runShort() { return shortEngine.ProcessJobs(); }

  ShortComponents components{erp.components};
  Environment shortEnvironment{components,
                               erp.desktop,
                               erp.jobView,
                               erp.clock,
                               erp.guids,
                               erp.localSettings,
                               erp.iniFile,
                               erp.diagnostics,
                               erp.liveness,
                               erp.database,
                               erp.environment.session,
                               ""};
  ImportJobObject2 shortEngine{shortEnvironment};
};

TEST_F(ShortMemory, EndsTheRunWithTheJobStillWaitingWhereverItIsShort) {
  stageMany(2);
  stageOrder("O1");
  stagePosition("O1", 1, "A100", 1);
  for (std::string* place : {&components.indexOf, &components.lineOf, &components.priceOf}) {
    *place = place == &components.priceOf ? "A100" : "70002";
    EXPECT_FALSE(runShort());
    EXPECT_EQ(shortEngine.lastRun().end, RunEnd::Broken);
    EXPECT_EQ(erp.desktop.shown.back().text,
              "Fehler bei der Verarbeitung: Der Arbeitsspeicher reicht nicht aus.");
    EXPECT_EQ(shortEngine.lastRun().error, 0U);
    EXPECT_EQ(jobType("O1"), 30);
    EXPECT_EQ(reasons("O1"), "");
    EXPECT_EQ(reasons("J2"), "");
    EXPECT_EQ(done(), place == &components.priceOf ? 2 : 0);
    EXPECT_EQ(orders(), 0);
    place->clear();
  }
  components.versionShort = true;
  EXPECT_FALSE(runShort()) << "a component that is there but cannot be made is not taken for a missing one";
  components.versionShort = false;
  EXPECT_TRUE(runShort());
  EXPECT_EQ(jobType("O1"), 33);
  EXPECT_THAT(protocol(),
              ElementsAre("Kunden|70001|Erledigt", "Kunden|70002|Erledigt", "Auftrag|1|Erledigt"));
  EXPECT_EQ(doubled(), 0);
}

TEST_F(ShortMemory, TheHeavyOrdersPaidOnDeliveryAreToldAlsoWhenTheRunBreaksOff) {
  for (const char* key : {"O1", "O2"}) {
    stageOrder(key, [](AuftragFields& job) { job.Zahlungsart = "NN"; });
    stagePosition(key, 1, key == std::string_view("O1") ? "A100" : "B200", 50);
  }
  // A host's connection has no groups: the first order is durable when the second one ends the run.
  shortEnvironment.connection = SqliteDatabase::openAsHost(connection().connectionString());
  components.priceOf = "B200";
  EXPECT_FALSE(runShort());
  EXPECT_EQ(orders(), 1);
  EXPECT_EQ(erp.desktop.texts(),
            "Folgende Aufträge enthalten Zahlungsart Nachnahme und wiegen mehr als 28 KG: 1\n"
            "Fehler bei der Verarbeitung: Der Arbeitsspeicher reicht nicht aus.\n");
}

} // namespace
} // namespace qx
