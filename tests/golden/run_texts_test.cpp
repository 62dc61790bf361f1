// The events of a run, its message boxes, and how the session is connected and released.
#include "golden_fixture.h"

#include "store/entry_objects.h"
#include "store/staging_writer.h"
#include "support/fake_session.h"

#include <functional>

namespace qx {
namespace {

/// Every event as a line, in order of arrival.
class EventLines final : public EngineEvents {
public:
  void JobViewUnload() override { text += "JobViewUnload\n"; }
  void ProcessProgress(std::int16_t percent) override { text += std::to_string(percent) + " %\n"; }
  void ProcessInfo(std::string_view info) override { text += std::string(info) + "\n"; }

  std::string text;
};

class RunTexts : public GoldenTest {
protected:
  void stageCustomer(std::string_view number) { stage("Kunde", "Kundennummer=" + std::string(number)); }
  /// Text, title and icon of every box so far, a line for each box.
  std::string boxes() {
    constexpr std::array icons{"none", "information", "exclamation", "critical"};
    std::string text;
    for (const Message& box : erp.desktop.shown)
      text += box.text + " [" + box.title + "] " + icons.at(static_cast<std::size_t>(box.icon)) + "\n";
    erp.desktop.shown.clear();
    return text;
  }
  std::string path(const char* name) const { return (erp.folder.path() / name).string(); }
};

TEST_F(RunTexts, EventsComeInTheirOrderWithTheTextsOfTheSectionsAndPurges) {
  for (const char* option : {"KundeDelete", "VTDelete", "AuftragDelete"}) erp.setOption(option, "1");
  for (const char* number : {"K2", "K1", "K3"}) stageCustomer(number);
  fill("Vertragsarten", "Vertragsart=WA");
  fill("VertragsGegenständePos", "VertrGegenstandsNr=G1\nVertragsart=WA");
  fill("Vertragsgegenstände", "VertrGegenstandsNr=G1");
  stage("Vertrag", "Kundennummer=K1\nVertragsnummer=N1\nArtikelnummer=G1\nVertragsart=WA");
  fill("Artikelstamm", "Artikelnummer=A1\nMwSt_KZ=V");
  for (const char* job : {"O1", "O2"})
    stage("Auftrag", "Kundennummer=K1\nEingangsdatum=12.10.2026\nJobID=" + std::string(job),
          {"Positionsnummer:1\nArtikelnummer=A1\nMenge:1"});
  EventLines lines;
  const Subscription handle = engine.subscribe(lines);
  run();
  EXPECT_EQ(lines.text, R"(Kunden werden verarbeitet...
Kunden werden verarbeitet... (Kundennummer: K1)
33 %
Kunden werden verarbeitet... (Kundennummer: K2)
67 %
Kunden werden verarbeitet... (Kundennummer: K3)
100 %
Verträge werden überprüft und verarbeitet...
Verträge werden überprüft und verarbeitet... (Kunde: K1 Vertragsgegenstand: G1)
100 %
Aufträge werden verarbeitet...
50 %
100 %
Archivdaten werden gelöscht (Kunden)
Archivdaten werden gelöscht (Verträge)
Archivdaten werden gelöscht (Aufträge)
)");
  EXPECT_EQ(rows("ImportKopf").find("JobType=13"), std::string::npos);
  EXPECT_NE(rows("ImportKopf").find("JobType=23"), std::string::npos) << "no purge takes single contracts";
}

TEST_F(RunTexts, OfTheBoxesAroundTheView) {
  erp.setOption("NewMail", "1");
  engine.ProcessJobs();
  EXPECT_EQ(boxes(), "Es wird gerade eine Bestellung eingelesen. [Quorvex Import] none\n");
  fill("LockControl", "Dateiname=ImportJob\nSatz=1\nStationID=unbennant\nSessionID=S\nBenutzer=Anna");
  engine.JobViewShow();
  EXPECT_EQ(boxes(), "Der Import wird gerade von Benutzer 'Anna' auf Rechner 'unbennant' bearbeitet. "
                     "[Datensatz gesperrt] none\n");
  erp.environment.connection.reset();
  engine.JobViewShow();
  EXPECT_EQ(boxes(), "Bitte geben Sie eine Connection an. [Quorvex Import] none\n");
}

TEST_F(RunTexts, OfTheBoxesOfTheProtocol) {
  engine.AddProtocolColumn("Kunden", "1", "Erledigt", "01.01.2026", "");
  EXPECT_EQ(boxes(),
            "Fehler beim Erzeugen der Protokollzeile. Es ist kein Protokoll geöffnet. [Quorvex Import] "
            "critical\n");
  erp.refuse("INSERT ON Protokolle"_sql, "'gesperrt'"_sql);
  EXPECT_FALSE(engine.CreateProtocol());
  EXPECT_EQ(boxes(), "Verarbeitungsprotokoll konnte nicht erzeugt werden. Die Datenbank hat das abgelehnt. "
                     "[Quorvex Import] critical\n");
}

TEST_F(RunTexts, OfTheBoxesOfTheCostAssignment) {
  erp.setSetting("Kostenzuordnung", "Kundenauftrag", "3");
  EXPECT_EQ(engine.CheckKostzuord("AB", 0, true), -1);
  EXPECT_EQ(boxes(), "Fehlende Zuordnung für Kostenstelle! [Kostenzuordnung fehlt!] exclamation\n");
  erp.setSetting("Kostenzuordnung", "Kundenauftrag", "2");
  EXPECT_EQ(engine.CheckKostzuord("ab", 0, true), -1);
  EXPECT_EQ(boxes(), "Fehlende Zuordnung für Kostenträger! [Kostenzuordnung fehlt!] exclamation\n");
  erp.setSetting("Kostenzuordnung", "Kost2", "Projekt");
  EXPECT_EQ(engine.CheckKostzuord("AB", 0, true), -1);
  EXPECT_EQ(boxes(), "Fehlende Zuordnung für Projekt! [Kostenzuordnung fehlt!] exclamation\n");
  EXPECT_EQ(engine.CheckKostzuord("AB", 0, false), -1);
  EXPECT_EQ(boxes(), "");
}

TEST_F(RunTexts, OfTheBoxesOfJobFiles) {
  erp.folder.write("other.edi", "\"Quorvex ImportJob V 1.0.1\";\r\n");
  EXPECT_FALSE(engine.Import(path("other.edi")));
  EXPECT_EQ(boxes(), "Die ausgewählte Datei entspricht nicht den konventionen. [Quorvex Import] none\n");
  erp.folder.write("short.edi", "\"Quorvex ImportJob V 2.0\";\r\n\"10\";\"C1\";\r\n");
  EXPECT_FALSE(engine.Import(path("short.edi")));
  EXPECT_EQ(boxes(), "Beim Importieren der Daten sind Fehler aufgetreten, es konnten evtl. nicht alle Daten "
                     "importiert werden. [Quorvex Import] none\n");
  EXPECT_FALSE(engine.Export(path("missing/jobs.edi")));
  EXPECT_EQ(boxes(), "Beim Exportieren der Daten sind Fehler aufgetreten, es konnten evtl. nicht alle Daten "
                     "exportiert werden. [Quorvex Import] information\n");
}

TEST_F(RunTexts, OfTheBoxOfHeavyCashOnDelivery) {
  fill("Kundenstamm", "Kundennummer=K1\nZahlungsart=NN");
  fill("Zahlungsarten", "Zahlungsart=NN\nKurztext=per Nachnahme");
  fill("Artikelstamm", "Artikelnummer=A1\nMwSt_KZ=V\nGewicht=28.5");
  for (const char* job : {"O1", "O2"})
    stage("Auftrag", "Kundennummer=K1\nEingangsdatum=12.10.2026\nJobID=" + std::string(job),
          {"Positionsnummer:1\nArtikelnummer=A1\nMenge:1"});
  run(true);
  EXPECT_EQ(boxes(), "Folgende Aufträge enthalten Zahlungsart Nachnahme und wiegen mehr als 28 KG: 501, 502 "
                     "[Quorvex Import] none\n");
}

// The session.

class SessionUse : public ::testing::Test {
protected:
  SessionUse() {
    world.components.session = world.session;
    world.session->database = erp.database;
    world.environment.session.reset();
  }

  TestErp erp;
  FakeWorld world;
};

TEST_F(SessionUse, ConnectsWithTheStartParametersAndDisconnectsAtTheEnd) {
  {
    ImportJobObject2 object(world.environment);
    object.setStartParameters({"Mandant", "S4711", ""});
    EXPECT_TRUE(object.WWSSession());
    EXPECT_EQ(object.ActiveConnection(), erp.database);
    EXPECT_EQ(world.session->calls,
              std::vector<std::string>{"Connect ActiveSessionID=S4711 Connectwith=Mandant"});
  }
  EXPECT_EQ(world.session->calls.back(), "Disconnect");
  EXPECT_EQ(world.session->calls.size(), 2U);
}

TEST_F(SessionUse, ARefusedConnectIsShownByTheSession) {
  world.session->errorCode = 7;
  ImportJobObject2 object(world.environment);
  object.setStartParameters({"Mandant", "S4711", ""});
  EXPECT_FALSE(object.WWSSession());
  EXPECT_EQ(world.session->calls.back().substr(0, 9), "ShowError");
  EXPECT_NE(world.session->calls.back().find("Mandant"), std::string::npos);
  EXPECT_FALSE(object.ActiveConnection());
}

} // namespace
} // namespace qx
