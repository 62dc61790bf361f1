// The texts of the statements, word for word and with their doubled blanks, as other programs of an
// installation know them from its logs.
#include "golden_fixture.h"

#include "engine/job_editing.h"
#include "rules/cost_assignment.h"
#include "rules/master_data.h"
#include "rules/tax_rules.h"
#include "store/entry_objects.h"
#include "store/import_job_object.h"
#include "store/staging_writer.h"
#include "support/fake_session.h"
#include "support/recording_connection.h"
#include "support/server_texts.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <set>

namespace qx {
namespace {

using Statements = std::vector<std::string>;

class AnyCombo final : public ComboTarget {
public:
  void setRowSource(ComboRows) override {}
  void hideColumn(int) override {}
  void setColumnHeaders(bool) override {}
  void setBookmark(std::size_t) override {}
};

/// The text with one value in place of all texts and one of all numbers.
std::string formOf(const Sql& statement) {
  std::string form;
  auto nextName = statement.names().begin();
  for (const SqlShape* shape : statement.shapes())
    for (const SqlPiece& piece : shape->pieces) switch (piece.slot) {
      case SqlSlot::Fixed:
        form += piece.text;
        break;
      case SqlSlot::Text:
        form += 'x';
        break;
      case SqlSlot::Number:
        form += '1';
        break;
      case SqlSlot::Name:
        form += "[" + *nextName++ + "]";
      }
  return form;
}

/// Appends the statements to the file that a program named which checks them against a grammar.
void handOver(const std::vector<Sql>& statements) {
  const char* const file = std::getenv("QX_STATEMENTS");
  if (file == nullptr) return;
  std::ofstream out(file, std::ios::app | std::ios::binary);
  for (const Sql& statement : statements) out << formOf(statement) << '\n';
  ASSERT_TRUE(out.flush()) << file;
}

/// Without those of the feed of results.
Statements withoutFeed(Statements statements) {
  std::erase_if(statements, [](const std::string& statement) {
    return statement.find("Zustandswechsel") != std::string::npos ||
           statement.starts_with("Update Zaehlerstaende") ||
           statement.starts_with("Select JobID, JobType From ImportKopf");
  });
  return statements;
}

class StatementTexts : public GoldenTest {
protected:
  void TearDown() override {
    if (recording) handOver(recording->asked);
  }
  void record(bool host = false) {
    if (recording) handOver(recording->asked);
    recording = std::make_shared<RecordingConnection>(erp.database, host);
    erp.environment.connection = recording;
  }
  /// The statements of this work.
  Statements of(const std::function<void()>& work) {
    record();
    work();
    return withoutFeed(recording->statements);
  }
  /// Those of the expected ones that were not run, one a line.
  std::string missing(const Statements& expected) const {
    std::string text;
    for (const std::string& statement : expected)
      if (std::ranges::find(recording->statements, statement) == recording->statements.end())
        text += statement + "\n";
    return text;
  }

  std::shared_ptr<RecordingConnection> recording;
};

TEST_F(StatementTexts, OfTheLookups) {
  MasterData data(erp.environment);
  std::string ignored;
  std::int16_t size = 0;
  const std::vector<std::pair<std::function<void()>, std::string>> cases{
      {[&] {
         engine.GetTextbaustein("TA", "TN", "ZT", "DE", ignored, ignored, ignored, ignored, size, ignored);
       },
       "SELECT * FROM Textbausteine WHERE Textart='TA' AND TextNummer='TN' AND ZusatztextNummer='ZT' AND "
       "SprachKZ='DE'"},
      {[&] { engine.GetArtikelbezeichnung("X"); }, "SELECT Bez From Artikelstamm Where Artikelnummer ='X'"},
      {[&] { engine.ArtikelAngelegt("X"); },
       "SELECT Artikelnummer FROM Artikelstamm WHERE Artikelnummer='X'"},
      {[&] { engine.GetDiversKunde("X"); }, "SELECT KZDivers FROM Kundenstamm WHERE Kundennummer='X'"},
      {[&] { engine.GetBankverbindung("X"); },
       "Select Kreditinstitut From Kreditinstitute WHERE Bankleitzahl='X'"},
      {[&] { engine.GetVertragsgegenstand("X"); },
       "SELECT Bez FROM Vertragsgegenstände WHERE VertrGegenstandsNr='X'"},
      {[&] { data.salesRepText("X"); }, "SELECT * From Vertreter where VertreterNr ='X'"},
      {[&] { data.shippingMethodOfCustomer("X"); },
       "Select Versandart From Kundenstamm where Kundennummer  = 'X'"},
      {[&] { data.paymentMethodOfCustomer("X"); },
       "SELECT Zahlungsart From Kundenstamm Where Kundennummer ='X'"},
      {[&] { data.shippingMethodText("X"); }, "SELECT Kurztext From Versandtexte Where Versandart ='X'"},
      {[&] { data.isAccessory("X"); }, "Select Erfassungsschema From Artikelstamm where Artikelnummer = 'X'"},
      {[&] { data.orderWeight(7); },
       "SELECT Sum(PosGewicht) AS GesamtGewicht FROM Auftragspos Where Auftragsnummer= 7"},
      {[&] { data.accessoryValue(7); },
       "SELECT Sum([IND_Zahl4]*Menge) AS GesamtPreis FROM Auftragspos Where Auftragsnummer= 7 And "
       "Zeilentyp = 'K' And Erfassungsschema = 'Zubehoer'"},
      {[&] { data.orderValue(7); },
       "SELECT Sum(Preis*Menge) AS GesamtPreis FROM Auftragspos Where Auftragsnummer= 7"},
      {[&] { data.codeExists("Zahlungsart", "X"); },
       "SELECT  Zahlungsart From Zahlungsarten where Zahlungsart='X'"},
      {[&] { data.codeExists("Vertreter", "X"); },
       "SELECT VertreterNr From Vertreter where VertreterNr ='X'"},
      {[&] { data.codeExists("Preisliste", "X"); },
       "SELECT  Preisliste From PreislistenKopf where Preisliste = 'X'"},
      {[&] { data.codeExists("Kundengruppe", "X"); },
       "SELECT  Kundengruppe From Kundengruppen where Kundengruppe = 'X'"},
      {[&] { data.codeExists("Versandart", "X"); },
       "SELECT  Versandart From Versandtexte where Versandart = 'X'"},
      {[&] { data.codeExists("Vertragsart", "X"); },
       "SELECT Vertragsart From Vertragsarten where Vertragsart = 'X'"},
      {[&] { CostAssignment(erp.environment).read(5); }, "Select * FROM Kostenzuordnung WHERE KostID=5"},
      {[&] {
         CostAssignment(erp.environment).find({" S ", "T"});
       },
       "Select * FROM Kostenzuordnung WHERE Kostenstelle='S' AND Kostentraeger='T'"},
      {[&] {
         CostAssignment(erp.environment).find({"", " "});
       },
       "Select * FROM Kostenzuordnung WHERE Kostenstelle Is Null AND Kostentraeger Is Null"}};
  for (const auto& [work, statement] : cases) EXPECT_EQ(of(work), Statements{statement});
  EXPECT_EQ(of([&] { engine.MengeneinheitAlternativ("X"); }),
            (Statements{"Select Mengeneinheit From MengeneinheitenAltern Where Alternativ = 'X'",
                        "Select * From Mengeneinheiten Where Mengeneinheit = 'X'"}));
}

TEST_F(StatementTexts, OfTheTaxOnTheConnectionOfTheSession) {
  record();
  FakeWorld world;
  world.session->database = recording;
  const TaxRules rules(world.environment);
  rules.GetSteuerschlüssel("IN", "V", "");
  rules.GetSteuerSatz("3");
  EXPECT_EQ(recording->statements,
            (Statements{"SELECT * FROM Steuerschlüsselzuordnung WHERE MwStKZKunde='IN' AND MwStKZArtikel='V'",
                        "SELECT * FROM Steuerschlüssel WHERE Steuerschlüssel='3'"}));
}

TEST_F(StatementTexts, OfStockAndItsUnit) {
  fill("Artikellager", "Artikelnummer=X\nLagernummer=1\nLagerbestand=5\nMitBestand=1");
  std::string unit;
  EXPECT_EQ(of([&] { engine.GetLagerbestand("X", "ST", 1, unit); }),
            (Statements{"Select Lagerbestand, MitBestand From Artikellager Where Artikelnummer = 'X'",
                        "Select Mengeneinheit From Artikelstamm Where Artikelnummer = 'X'"}));
}

TEST_F(StatementTexts, OfTheDropDownLists) {
  AnyCombo combo;
  EXPECT_EQ(of([&] {
              engine.FillComboVersandart(combo, "");
              engine.FillComboZahlungsart(combo, "");
              engine.FillComboKundengruppe(combo, "");
              engine.FillComboPreisliste(combo, "");
              engine.FillComboWährung(combo, "");
              engine.FillComboVertragsart(combo, "");
              engine.FillComboVertreter(combo, "");
              engine.FillComboZahlungsbed(combo, "");
            }),
            (Statements{"SELECT Kurztext, Versandart From Versandtexte",
                        "SELECT Kurztext, Zahlungsart From Zahlungsarten",
                        "SELECT Langtext, Kundengruppe From Kundengruppen",
                        "SELECT Langtext, Preisliste From PreislistenKopf",
                        "SELECT Langtext, Währung From Währungen",
                        "SELECT Vertragsart, Kurztext From Vertragsarten",
                        "Select (isnull(Bez1,'') + ' ' + isnull(Bez2,'')) as Bezeichnung, VertreterNr from "
                        "Vertreter order by vertreternr",
                        "SELECT [ZahlbedSchl], [SkontoTage1],[SkontoProzent1],[SkontoTage2],[SkontoProzent2],"
                        "[SkontoTage3],[SkontoProzent3],[NettoTage] FROM Zahlungsbedingungen ORDER BY "
                        "[ZahlbedSchl]"}));
}

TEST_F(StatementTexts, OfStagingTheListAndTheLock) {
  record();
  Kunde customer(erp.environment);
  customer.JobID = "C1";
  customer.AddItem();
  AuftragsPos position(erp.environment);
  position.ChildID = "P1";
  position.AddItem();
  engine.ConnectDB();
  engine.JobViewShow();
  engine.Unload();
  EXPECT_EQ(
      missing({"SELECT * From ImportKopf where JobID = 'C1'", "SELECT * From ImportPos where ChildID = 'P1'",
               "Select * From ImportKopf Order by Eingangsdatum",
               "SELECT * FROM LockControl WHERE Dateiname='ImportJob' AND Satz='1'",
               "Delete FROM LockControl WHERE Dateiname='ImportJob' AND Satz='1'"}),
      "");
}

TEST_F(StatementTexts, OfDeleting) {
  fill("ImportKopf", "JobID=C1\nJobType=11\nKundennummer=K1");
  EXPECT_EQ(
      of([&] { engine.DelItem("C1", true); }),
      (Statements{"Select JobType, Kundennummer From ImportKopf where JobID = 'C1'",
                  "Delete From ImportKopf where Kundennummer = 'K1' And (JobType = 40 or JobType = 41 or "
                  "JobType = 42 or JobType =44)",
                  "Delete From [ImportKopf] where [JobID] = 'C1'",
                  "Delete From [ImportPos] where [JobID] = 'C1' or [ChildID] = 'C1'"}));
  EXPECT_EQ(of([&] { engine.DelArchives(); }),
            Statements{"Select JobID From ImportKopf Where Right(JobType,1) = '3' "});
  EXPECT_EQ(of([&] { JobDeletion(erp.environment).deleteDoneBefore(makeDate(2026, 1, 1)); }),
            Statements{"Select JobID,Eingangsdatum From ImportKopf Where Right(JobType,1) = '3'"});
}

TEST_F(StatementTexts, OfTheDialogs) {
  fill("ImportKopf", "JobID=C1\nJobType=11\nKundennummer=K1\n--\nJobID=O1\nJobType=31");
  const JobEditing editing(erp.environment);
  EXPECT_EQ(
      of([&] {
        editing.saveCustomer("C1", {}, "K1", CheckStatus::Warning);
        editing.savePositions("O1", editing.positions("O1"));
        editing.units();
        editing.contractHeader("O1");
        editing.deleteHeader("O1");
      }),
      (Statements{
          "Select * From ImportKopf Where (JobType = 40 Or JobType = 41 Or JobType = 42) And "
          "Kundennummer = 'K1'",
          "Select * From ImportKopf where Kundennummer = 'K1' And (JobType = 40 or JobType = 41 or "
          "JobType = 42 or JobType = 43 or JobType = 44)",
          "SELECT * From ImportKopf where JobID = 'C1'",
          "SELECT ImportType FROM ImportKopf WHERE (JobType = 40 Or JobType = 41 or JobType = 42) AND "
          "Kundennummer = 'K1'",
          "SELECT *, Cast(Positionsnummer as int) as intPos From ImportPos where JobID = 'O1' Order By "
          "intPos",
          "Delete From ImportPos where JobID = 'O1'", "Select * From ImportPos where JobID = 'O1'",
          "SELECT Mengeneinheit, Langtext From Mengeneinheiten",
          "Select * From ImportKopf  Where JobID = 'O1'", "Delete From ImportKopf  Where JobID = 'O1'"}));
}

/// Opens connections that are recorded.
class RecordingDatabase final : public Database {
public:
  explicit RecordingDatabase(const TestErp& erp) : erp_(erp) {}
  std::unique_ptr<Connection> open(std::string_view /*target*/) override {
    auto connection = std::make_unique<RecordingConnection>(erp_.secondConnection());
    opened = connection.get();
    return connection;
  }
  std::unique_ptr<Connection> create(std::string_view target) override { return open(target); }

  RecordingConnection* opened = nullptr;

private:
  const TestErp& erp_;
};

TEST_F(StatementTexts, OfTheOlderJobObject) {
  fill("ImportKopf", "JobID=C1\nJobType=10\n--\nJobID=C2\nJobType=21");
  RecordingDatabase database(erp);
  ImportJobObject older(erp.environment, database);
  older.ActiveConnection(erp.file);
  ASSERT_TRUE(older.ConnectDB());
  database.opened->statements.clear();
  older.UpdateItem(ImportJob(), "C1");
  older.UpdateSubItem(ImportJobSubItem(), "P1");
  older.DelArchives();
  EXPECT_EQ(
      withoutFeed(database.opened->statements),
      (Statements{"Select * From [ImportKopf] where [JobID] = 'C1'",
                  "Select * From [ImportPos] where [ChildID] = 'P1'",
                  "Select JobID From ImportKopf Where Right(JobType,1) = '1' And Not Left(JobType,1) ='-'",
                  "Delete From [ImportKopf] where [JobID] = 'C2'",
                  "Delete From [ImportPos] where [JobID] = 'C2' or [ChildID] = 'C2'"}));
}

TEST_F(StatementTexts, OfAReadViewSpeakOfOneStateThroughTheRecordingToo) {
  record();
  EXPECT_EQ(recording->files().empty(), erp.onServer());
  const auto jobs = [&] {
    return recording->open(sql("Select Count(*) From ImportKopf"_sql))->value(std::size_t{0}).integer();
  };
  const auto other = erp.secondConnection();
  {
    const ReadView view(*recording);
    EXPECT_EQ(jobs(), 0);
    other->execute(sql("Insert Into ImportKopf (JobID, JobType) Values ('X', 10)"_sql));
    EXPECT_EQ(jobs(), 0);
  }
  EXPECT_EQ(jobs(), 1);
}

/// A run over one job of each kind, its check included.
class StatementsOfARun : public StatementTexts {
protected:
  StatementsOfARun() {
    for (const char* option : {"KundeDelete", "VTDelete", "AuftragDelete", "KreditlimitAuftrag",
                               "KostenzuordnungAuftrag", "AutomatischVerarbeiten"})
      erp.setOption(option, "1");
    fill("Kundenstamm", R"(
      Kundennummer=K1
      Versandart=VA
      Zahlungsart=ZA
      ZahlungsbedSchl=ZB
      VertreterNr1=R1)");
    fill("Kundengruppen", "Kundengruppe=KG");
    fill("Vertreter", "VertreterNr=R1\n--\nVertreterNr=R2\n--\nVertreterNr=R3");
    fill("Versandtexte", "Versandart=VA");
    fill("Zahlungsarten", "Zahlungsart=ZA");
    fill("Zahlungsbedingungen", "ZahlbedSchl=ZB");
    fill("Kreditinstitute", "Bankleitzahl=BZ");
    fill("Vertragsarten", "Vertragsart=WA");
    fill("VertragsGegenständePos", "VertrGegenstandsNr=G1\nVertragsart=WA");
    fill("Vertragsgegenstände", "VertrGegenstandsNr=G1\nBez=Gegenstand");
    fill("Artikelstamm", "Artikelnummer=A1\nMengeneinheit=ST\nMwSt_KZ=V\nWertJN=1");
    fill("Kostenzuordnung", "KostID=5\nKostenstelle=S\nKostentraeger=T");
    stage("Kunde", R"(
      JobID=C1
      Kundennummer=K2
      Kundengruppe=KG
      Vertreter1=R1
      Vertreter2=R2
      Vertreter3=R3
      Zahlungsart=ZA
      Versandart=VA
      ZahlungsbedSchl=ZB
      BLZ=BZ
      VS_AdrNr=2
      VS_Bez1=Lager)");
    stage("Vertrag", R"(
      JobID=V1
      Kundennummer=K1
      Vertragsnummer=N1
      Artikelnummer=G1
      Vertragsart=WA
      Zustand=A)");
    stage("Auftrag", R"(
      JobID=O1
      Kundennummer=K1
      Eingangsdatum=12.10.2026
      IndFild2=I2
      IndFild3=I3)",
          {"ChildID=P1\nPositionsnummer:1\nArtikelnummer=A1\nMenge:2\nPreis:3\nMengeneinheit=PAK\nKostID:5"});
    fill("MengeneinheitenAltern", "Alternativ=PAK\nMengeneinheit=KT");
    erp.execute("Update ImportKopf Set ProcessWarning = 1 Where JobID = 'O1'"_sql);
  }
};

TEST_F(StatementsOfARun, TheSelectionsOfTheStepsComeInTheirOrder) {
  record();
  run();
  const Statements steps{"SELECT * FROM ImportKopf Where JobType =20",
                         "Select JobType, ImportType, Fehlertext From ImportKopf Where ProcessWarning = 1",
                         "Select * From ImportKopf Where JobType = 10 Order By Kundennummer",
                         "Select * From ImportKopf Where JobType = 40 Or JobType = 20 Order by Kundennummer",
                         "Select * From ImportKopf Where JobType = 30 Order by Eingangsdatum",
                         "Select JobID From ImportKopf Where JobType = '13' ",
                         "Select JobID From ImportKopf Where JobType = '43' ",
                         "Select JobID From ImportKopf Where JobType = '33' "};
  Statements found;
  for (const std::string& statement : recording->statements)
    if (std::ranges::find(steps, statement) != steps.end()) found.push_back(statement);
  EXPECT_EQ(found, steps);
}

// What grows with the business is neither read from end to end nor sorted; an article has few prices.
TEST_F(StatementsOfARun, FindTheirRowsByIndex) {
  record();
  run();
  std::set<std::string> slow;
  for (const Sql& each : recording->asked)
    for (const auto plan =
             withoutServerTexts(*erp.database).open(sql("EXPLAIN QUERY PLAN "_sql).append(each));
         !plan->eof(); plan->moveNext()) {
      const std::string step = plan->text("detail");
      const bool ofACustomer = each.text().find("Kundennummer = '") != std::string::npos &&
                               each.text().find("Verkaufspreise") == std::string::npos;
      if ((step.starts_with("SCAN") && step != "SCAN CONSTANT ROW") ||
          step.find("TEMP B-TREE") != std::string::npos ||
          (ofACustomer && step.starts_with("SEARCH") && step.find("Kundennummer=?") == std::string::npos))
        slow.insert(step + ": " + each.text());
    }
  // Two kinds of contracts in one order, and the positions of one order.
  EXPECT_THAT(slow, ::testing::ElementsAre(::testing::HasSubstr("JobType = 40 Or JobType = 20"),
                                           ::testing::HasSubstr("Order By intPos")));
}

TEST_F(StatementsOfARun, OfTheCustomerAndTheContract) {
  record();
  run();
  EXPECT_EQ(
      missing(
          {"SELECT * FROM ImportKopf Where (JobType = 10 or JobType = 11 or JobType = 12) And (JobID ='C1')",
           "Select JobType From ImportKopf where (JobType = 41 or JobType = 42) and  (Kundennummer = 'K2')",
           "SELECT  Kundengruppe From Kundengruppen where Kundengruppe = 'KG'",
           "SELECT VertreterNr From Vertreter where VertreterNr ='R1'",
           "SELECT  Versandart From Versandtexte where Versandart = 'VA'",
           "SELECT  Zahlungsart From Zahlungsarten where Zahlungsart='ZA'",
           "Select * From Kundenstamm Where Kundennummer = 'K2'",
           "Select Kundengruppe, Langtext From Kundengruppen where Kundengruppe = 'KG'",
           "Select VertreterNr, Suchbegriff, Bez1 From Vertreter where VertreterNr = 'R1'",
           "Select VertreterNr, Suchbegriff, Bez1 From Vertreter where VertreterNr = 'R2'",
           "Select VertreterNr, Suchbegriff, Bez1 From Vertreter where VertreterNr = 'R3'",
           "Select Zahlungsart, Kurztext From Zahlungsarten  where Zahlungsart = 'ZA'",
           "Select Bankleitzahl, Kreditinstitut From Kreditinstitute where Bankleitzahl = 'BZ'"}),
      "");
  EXPECT_EQ(
      missing(
          {"Select * From ImportPos   Where JobID = 'V1'",
           "Select * From Verträge Where KundenNummer ='K1' and Vertragsnummer='N1' and  "
           "VertrGegenstandsNr='G1' and Vertragsart='WA'",
           "Select Kundennummer From Kundenstamm where Kundennummer  = 'K1'",
           "Select Vertragsart From Vertragsarten where Vertragsart  = 'WA'",
           "Select VertrGegenstandsNr From [VertragsGegenständePos] where [VertrGegenstandsNr] = 'G1' And "
           "Vertragsart ='WA'",
           "Select VertrGegenstandsNr From [Vertragsgegenstände] where [VertrGegenstandsNr]  = 'G1'",
           "Select Bez From Vertragsgegenstände where VertrGegenstandsNr  = 'G1'"}),
      "");
}

TEST_F(StatementsOfARun, OfTheOrder) {
  record();
  run();
  EXPECT_EQ(
      missing({"SELECT * FROM ImportKopf Where (ImportKopf.JobType = 30 or ImportKopf.JobType = 31 or "
               "ImportKopf.JobType = 32) And (ImportKopf.JobID ='O1')",
               "Select Kreditlimit1, Kreditlimit2, Währung from Kundenstamm WHERE Kundennummer='K1'",
               "SELECT * FROM ImportPos Where ImportPos.JobID ='O1'",
               "Select Mengeneinheit From MengeneinheitenAltern Where Alternativ = 'PAK'",
               "Select * FROM Kostenzuordnung WHERE KostID=5",
               "SELECT Artikelnummer FROM Artikelstamm WHERE Artikelnummer='A1'",
               "Select * From Auftragskopf Where Auftragsnummer = 0",
               "SELECT * From Nummernkreise Where NSchl ='AB' AND Buchungskreis = 3 AND Aktiviert =1",
               "Select * From Kundenstamm where Kundennummer  = 'K1'",
               "Select Versandart From Versandtexte where Versandart  = 'VA'",
               "Select Zahlungsart From Zahlungsarten  where Zahlungsart = 'ZA'",
               "Select ZahlbedSchl From Zahlungsbedingungen where ZahlbedSchl = 'ZB'",
               "Select * From Personalstamm where PersonalNr  = 'P7'",
               "Select *, Cast(Positionsnummer as int) as intPos From ImportPos Where JobID ='O1' Order By "
               "intPos",
               "Select * From Auftragspos Where Auftragsnummer =0",
               "Select * From Artikelstamm where Artikelnummer  = 'A1'",
               "Select * FROM Kostenzuordnung WHERE Kostenstelle='S' AND Kostentraeger='T'",
               "UPDATE Kundenstamm SET KundeSeit = '12.10.2026', Ind_Text2 = 'I2', Ind_Text3 = 'I3' WHERE "
               "Kundennummer  = 'K1'"}),
      "");
  const auto totals = std::ranges::find_if(recording->statements, [](const std::string& statement) {
    return statement.starts_with(
        "SELECT Zeilentyp, MwSt_KZ, WertJN, Menge, Preis, Preiseinheit, KZRabattart, "
        "Rabatt1, Rabatt2, Rabatt3, ");
  });
  ASSERT_NE(totals, recording->statements.end());
  EXPECT_TRUE(totals->ends_with(" Rabattfähig, PosGewicht FROM Auftragspos WHERE Auftragsnummer = '501'"))
      << *totals;
}

TEST_F(StatementsOfARun, OfAnOrderTakenBackOnAHostsConnection) {
  erp.refuse("INSERT ON Belegindex"_sql, "'gesperrt'"_sql);
  record(true);
  run();
  EXPECT_EQ(missing({"Delete From Auftragspos Where Auftragsnummer = '501'",
                     "Select aktuellerWert From Nummernkreise Where NSchl = 'AB' And Buchungskreis =3"}),
            "");
}

TEST_F(StatementTexts, OfTheProtocolThatHoldsNothingWorthKeeping) {
  erp.setSetting("Allgemein", "Individual", "VLK");
  record();
  run();
  const std::string id = engine.ImpGetSetting("QXImportJob", "ImportJob2", "ProtoID");
  EXPECT_EQ(missing({"SELECT * FROM Protokollpositionen WHERE ([Text0]='Auftrag' Or [Text8]='1') and ID ='" +
                         id + "'",
                     "DELETE FROM Protokollpositionen WHERE ID ='" + id + "'",
                     "DELETE FROM Protokolle WHERE ID ='" + id + "'"}),
            "");
}

TEST_F(StatementTexts, OfAContractWithAPosition) {
  stage("Vertrag", "JobID=V1\nKundennummer=K1", {"ChildID=P1\nArtikelnummer=G1"});
  record();
  run();
  EXPECT_EQ(
      missing({"Select * From ImportPos   Where JobID = 'V1'", "Delete From ImportPos where JobID = 'V1'"}),
      "");
}

} // namespace
} // namespace qx
