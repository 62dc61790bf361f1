// Every member of the engine object, called by its name.
#include "automation_fixture.h"

#include <set>

namespace qx::automation {
namespace {

class EngineMembers : public AutomationTest {
protected:
  EngineMembers() {
    add("Adressenstamm",
        {{"Kundennummer", "20001"}, {"Adressnummer", "7"}, {"Bez1", "Lager"}, {"Ort", "Kiel"}});
    add("Vertragsgegenstände", {{"VertrGegenstandsNr", "G1"}, {"Bez", "Aufzug"}});
    add("Textbausteine", {{"Textart", "K"},
                          {"TextNummer", "1"},
                          {"ZusatztextNummer", ""},
                          {"SprachKZ", "D"},
                          {"Kurztext", "kurz"},
                          {"Langtext", "lang"},
                          {"WoDrucken", "oben"},
                          {"Schriftart", "Arial"},
                          {"Schriftgröße", 12},
                          {"Schriftstil", "fett"}});
    add("Artikellager",
        {{"Artikelnummer", "A100"}, {"Lagernummer", "1"}, {"Lagerbestand", 24.0}, {"MitBestand", true}});
    add("MengeneinheitenAltern", {{"Alternativ", "Stück"}, {"Mengeneinheit", "ST"}});
    add("Umrechnungen",
        {{"Artikelnummer", "A100"}, {"Mengeneinheit", "KT"}, {"Basiseinheit", "ST"}, {"Faktor", 12.0}});
  }

  struct Call {
    const char* member;
    std::vector<Variant> arguments;
    std::string outcome;
  };
  void expect(const std::vector<Call>& calls) {
    for (const Call& each : calls) {
      tried.insert(each.member);
      EXPECT_EQ(called(object, each.member, each.arguments), each.outcome) << each.member;
    }
  }
  /// That every member from one to another of the table was called.
  void expectAllTried(std::string_view first, std::string_view last) {
    bool inside = false;
    for (const Member& member : ClassOf<ImportJobObject2>::table().members()) {
      inside = inside || member.description.name == first;
      EXPECT_TRUE(!inside || tried.count(member.description.name) == 1) << member.description.name;
      if (member.description.name == last) return;
    }
    ADD_FAILURE() << last;
  }

  ObjectPointer object = create("ImportJobObject2");
  std::set<std::string, std::less<>> tried;
};

} // namespace

TEST_F(EngineMembers, OfTheObjectDoTheirWork) {
  stageMany(1);
  const std::string file = (erp.folder.path() / "aufträge.edi").string();
  Variant noProof;
  Variant noProcess;
  Variant view;
  erp.setOption("AutomatischVerarbeiten", "1");
  const std::string key = "00000001000000000000000000000000";
  expect({
      {"ConnectDB", {}, "True"},
      {"VerifyProcesses", {Variant::reference(noProof), Variant::reference(noProcess)}, "Empty"},
      {"JobViewShow", {Variant::reference(view)}, "Empty"},
      {"ViewFormLoad", {}, "1&"},
      {"Unload", {}, "Empty"},
      {"ViewFormLoad", {}, "2&"},
      {"CreateProtocol", {}, "True"},
      {"Export", {file}, "True"},
      {"DelItem", {"J1", true}, "Empty"},
      {"Import", {file}, "True"},
      // As variables of the caller, by their names of the enumeration and with the check left out.
      {"ProcessJobs", {true, 2}, "True"},
      {"ProcessJobs", {Variant::missing(), 1}, "True"},
      {"strGlobalProcErr", {}, "''"},
      {"strGlobalKundeProcErr", {}, "''"},
      {"DelArchives", {}, "Empty"},
      {"nCommand", {}, "''"},
      {"AddProtocolColumn", {"Kunden", "1", "Fehler", "", ""}, "Empty"},
  });
  EXPECT_EQ(shown(noProof) + shown(noProcess), "TrueFalse");
  EXPECT_EQ(objectOf(view), object);
  EXPECT_EQ(count("Select Count(*) From ImportKopf"_sql), 0);
  EXPECT_EQ(count("Select Count(*) From Importlaeufe Where Programm = 'Prüfstand 1.0' And "
                  "Ausgang = 'completed'"_sql),
            2)
      << "runs of a host stand in the book";
  EXPECT_EQ(customer("70001", "Bez1").text(), "Firma 70001");
  EXPECT_EQ(protocol(), (std::vector<std::string>{"Kunden|70001|Erledigt", "Kunden|1|Fehler"}));
  const std::string made = called(object, "GUID");
  EXPECT_EQ(made.size(), key.size() + 2);
  EXPECT_EQ(set(object, "nCommand", "Los"), "Empty");
  EXPECT_EQ(read(object, "nCommand"), "'Los'");
  EXPECT_EQ(set(object, "ViewFormLoad", 0), "Empty");
  EXPECT_EQ(set(object, "strGlobalProcErr", 5), "Empty");
  EXPECT_EQ(read(object, "strGlobalProcErr"), "'5'");

  // A selection that is none of the five processes nothing.
  stageCustomer("J2", "70002");
  expect({{"ProcessJobs", {true, 3}, "True"}, {"ProcessJobs", {true, "2"}, "True"}});
  EXPECT_EQ(jobType("J2"), 10);
  EXPECT_EQ(called(object, "ProcessJobs", {true, 70000}).substr(0, 3), "6: ");

  expect({{"WWSSession", {}, "True"}});
  tried.insert({"ActiveConnection", "Session", "GUID"});
  expectAllTried("ActiveConnection", "GUID");
}

TEST_F(EngineMembers, TakeTheHostsConnectionAndSession) {
  const ObjectPointer own = objectIn(object, "ActiveConnection");
  EXPECT_EQ(own->className(), "Connection");
  EXPECT_EQ(read(own, "ConnectionString"), "'" + erp.file + "'");
  EXPECT_EQ(objectIn(object, "ActiveConnection"), own);

  const auto ofHost = ScriptObject::make("Datenbank");
  EXPECT_EQ(set(object, "ActiveConnection", ObjectPointer(ofHost)), "Empty");
  EXPECT_EQ(objectIn(object, "ActiveConnection"), ofHost);
  EXPECT_FALSE(erp.environment.connection->ownsWork());
  const auto adopted = erp.environment.connection;
  EXPECT_EQ(set(object, "ActiveConnection", ObjectPointer(ofHost)), "Empty");
  EXPECT_EQ(erp.environment.connection, adopted);
  EXPECT_EQ(set(object, "ActiveConnection", own), "Empty");
  EXPECT_EQ(erp.environment.connection, erp.database);
  EXPECT_EQ(set(object, "ActiveConnection", Variant::nothing()), "Empty");
  EXPECT_EQ(read(object, "ActiveConnection"), "Nothing");

  const ObjectPointer ownSession = objectIn(object, "Session");
  EXPECT_EQ(read(ownSession, "UserName"), "'pruefer'");
  const auto session = ScriptObject::make("Sitzung");
  EXPECT_EQ(set(object, "Session", ObjectPointer(session)), "Empty");
  EXPECT_EQ(objectIn(object, "Session"), session);
  EXPECT_EQ(called(object, "NowEx"), "#20261124000000#");
  EXPECT_EQ(set(object, "Session", ownSession), "Empty");
  EXPECT_EQ(set(object, "Session", Variant::nothing()), "Empty");
  EXPECT_EQ(read(object, "Session"), "Nothing");
}

TEST_F(EngineMembers, GiveTheSessionToWhoWantsIt) {
  const ObjectPointer session = objectIn(object, "Session");
  erp.setSetting("Allgemein", "Farbe", "grün");
  EXPECT_EQ(called(objectIn(session, "Umrechnungen"), "GetUmrechnung",
                   {"A100", "ME Lager", "ME Verkauf", "ST", "KT"}),
            "12#");
  const std::vector<Call> calls{
      {"Connect", {"", ""}, "Empty"},
      {"NotConnected", {}, "False"},
      {"ErrorCode", {}, "0&"},
      {"ShowError", {"Nichts da"}, "Empty"},
      {"PersonalNr", {}, "''"},
      {"GetSetting", {"Allgemein", "Farbe", Variant::missing(), 1}, "'grün'"},
      {"GetSetting", {"Allgemein", "Form", "rund", 1}, "'rund'"},
      {"SaveSetting", {"Allgemein", "Farbe", "blau", Variant::missing(), 1}, "Empty"},
      {"GetSetting", {"Allgemein", "Farbe"}, "'blau'"},
      {"GetSessionDate", {}, "#20261124000000#"},
      {"GetBuchungskreis", {}, "1%"},
      {"GetBelegnummer", {"AB", 1}, "1&"},
      {"GetBelegnummer", {"XX", 1}, "Null"},
      {"Disconnect", {}, "Empty"},
      {"NotConnected", {}, "True"},
  };
  for (const Call& each : calls)
    EXPECT_EQ(called(session, each.member, each.arguments), each.outcome) << each.member;
  EXPECT_EQ(erp.desktop.texts(), "Nichts da\n");
}

TEST_F(EngineMembers, OfLookupsAnswer) {
  const Variant any = "by value";
  Variant text;
  Variant size;
  Variant state = "?";
  const ObjectPointer contract = create("Vertrag");
  expect({
      {"KundeAngelegt", {"20001"}, "True"},
      {"KundeAngelegt", {20001, "7"}, "True"},
      {"KundeAngelegt", {"20001", "8"}, "False"},
      {"GetAdresse", {"20001", 7}, "'Lager\r\nKiel'"},
      {"GetAdressDaten", {"20001", "8", any, any, any, any, any, any, any}, "False"},
      {"AddAdressDaten", {"20001", "8", "Büro", "", "", "", "DE", "24103", "Kiel"}, "True"},
      {"AddAdressDaten", {"20001", "8", "Haus", "", "", "", "DE", "24103", "Kiel"}, "False"},
      {"GetAdresse", {"20001", "8"}, "'Büro\r\nDE\r\n24103\r\nKiel'"},
      {"GetBankverbindung", {"90000001"}, "'Musterbank'"},
      {"GetDiversKunde", {"20001"}, "False"},
      {"GetVertragsZustand", {"20001", "V1", "G1", "W", Variant::reference(state)}, "0%"},
      {"GetVertragsZustand", {"20001", "V1", "G1", "W"}, "0%"},
      {"GetDiffVertrags", {contract}, "True"},
      {"GetDelVerträge", {"20001"}, "0&"},
      {"VertragsgegenstandAngelegt", {"G1"}, "True"},
      {"GetVertragsgegenstand", {"G1"}, "'Aufzug'"},
      {"GetTextbaustein",
       {"K", 1, "", "D", any, Variant::reference(text), any, any, Variant::reference(size), any},
       "True"},
      {"GetArtikelbezeichnung", {"A100"}, "'Artikel A100'"},
      {"ArtikelAngelegt", {"A999"}, "False"},
  });
  EXPECT_EQ(shown(text) + shown(size) + shown(state), "'lang'12%''");
  expectAllTried("KundeAngelegt", "ArtikelAngelegt");
}

TEST_F(EngineMembers, OfTheRulesCompute) {
  const Variant any = "by value";
  Variant unit;
  const Variant none = Variant::null();
  expect({
      {"GetSteuerschlüssel", {"IN", "V", "20261124"}, "3%"},
      {"GetSteuerSatz", {3}, "19#"},
      {"GetGRabatt", {"A", "P", 10, none, none, none, none, 1, "50"}, "5#"},
      {"GetGRabatt", {"A", "P", 10, none, none, none, none, none, none}, "10#"},
      {"rundenEx", {2.345, 0.01, false}, "2.35#"},
      {"rundenEx", {"2,341", 0.01, true}, "2.35#"},
      {"intdat", {DateTime{makeDate(2026, 11, 24), 18, 0, 0}}, "'20261124000000'"},
      {"intdat", {"1.2.2026"}, "'20260201000000'"},
      {"NowEx", {}, "#20261124000000#"},
      {"GetLagerbestand", {"A100", "KT", 1, any}, "24#"},
      {"GetLagerbestand", {"A100", "KT", 1, Variant::reference(unit), true}, "2#"},
      {"MengeneinheitAlternativ", {"Stück"}, "'ST'"},
      {"CheckKostzuord", {"Kundenauftrag", 0, false}, "0&"},
      {"CheckSum", {"AB"}, "131&"},
  });
  EXPECT_EQ(shown(unit), "'KT'");
  const Variant scrambled = call(*object, "Encrypt", {"Überfall 7"});
  EXPECT_NE(shown(scrambled), "'Überfall 7'");
  expect({{"Decrypt", {scrambled}, "'Überfall 7'"}});
  tried.insert("Encrypt");
  expectAllTried("GetSteuerschlüssel", "CheckSum");
}

TEST_F(EngineMembers, OfDropDownListsFillTheListOfTheHost) {
  add("Kundengruppen", {{"Kundengruppe", "H"}, {"Langtext", "Handel"}});
  add("PreislistenKopf", {{"Preisliste", "A"}, {"Langtext", "Allgemein"}});
  add("Vertragsarten", {{"Vertragsart", "W"}, {"Kurztext", "Wartung"}});
  const auto column = ScriptObject::make("Column");
  column->holding("Visible");
  const auto combo = ScriptObject::make("Combo");
  combo->holding("RowSource")
      .holding("ColumnHeaders")
      .holding("Bookmark")
      .with("Columns", [&](Access, Arguments& arguments) -> Variant {
        EXPECT_EQ(int32Of(arguments.positional.front()), 1);
        return ObjectPointer(column);
      });
  const Variant list = ObjectPointer(combo);
  const auto filled = [&](const char* member, const char* current, const char* outcome, const char* rows) {
    host.shownRows.clear();
    combo->log.clear();
    expect({{member, {list, current}, outcome}});
    EXPECT_EQ(host.shownRows, rows) << member;
    return combo->log;
  };
  EXPECT_EQ(filled("FillComboVersandart", "sp", "True", "Paket=PO;Spedition=SP;"),
            "RowSource=Recordset ColumnHeaders=False Bookmark=101# ");
  EXPECT_EQ(column->log, "Visible=False ");
  EXPECT_EQ(filled("FillComboVersandart", "XX", "False", "Paket=PO;Spedition=SP;"),
            "RowSource=Recordset ColumnHeaders=False ");
  filled("FillComboZahlungsart", "RE", "True", "Rechnung=RE;Per NACHNAHME=NN;");
  filled("FillComboKundengruppe", "H", "True", "Handel=H;");
  filled("FillComboPreisliste", "A", "True", "Allgemein=A;");
  filled("FillComboWährung", "EUR", "True", "Euro=EUR;");
  filled("FillComboVertragsart", "W", "True", "W=Wartung;");
  filled("FillComboVertreter", "02", "True", "Berg =01;Tal =02;");
  filled("FillComboZahlungsbed", "30", "True", "30 Tage netto.=30;");
  expectAllTried("FillComboVersandart", "FillComboZahlungsbed");
  EXPECT_EQ(called(object, "FillComboVersandart", {Variant::nothing(), ""}).substr(0, 3), "91:");
  EXPECT_EQ(called(object, "FillComboVersandart", {"PO", ""}).substr(0, 3), "13:");
  // A list that lacks a member of the control.
  EXPECT_EQ(called(object, "FillComboVersandart", {ObjectPointer(ScriptObject::make("Liste")), ""}),
            "438: ImportJobObject2.FillComboVersandart: Liste kennt 'RowSource' nicht.");
}

TEST_F(EngineMembers, OfSettingsReadAndWrite) {
  expect({
      {"ImpSaveSetting", {"QXImportJob", "Process", "Farbe", "grün"}, "''"},
      {"ImpGetSetting", {"QXImportJob", "Process", "Farbe", false}, "'grün'"},
      {"ImpGetSetting", {"QXImportJob", "Process", "Farbe", true}, "''"},
      {"ImpSaveSetting", {"QXImportJob", "MAIN", "MainTop", 20, true}, "''"},
      {"ImpGetSetting", {"QXImportJob", "MAIN", "MainTop", true}, "'20'"},
      {"ImpGetSetting", {"QXImportJob", "MAIN", "MainTop"}, "''"},
  });
  expectAllTried("ImpGetSetting", "ImpSaveSetting");
}

} // namespace qx::automation
