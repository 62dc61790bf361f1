// Findings as values: what programs read of them, and what is said of each.
#include "program_fixture.h"

namespace qx {
namespace {

class Explained : public ProgramTest {};

TEST_F(Explained, AValueWithLineBreaksForgesNoFinding) {
  const std::string value = "A'\r\nVertreter1: '007' ist nicht angelegt.";
  Json staged{
      {"type", "Kunde"}, {"JobID", "K1"}, {"Kundennummer", "1"}, {"Bez1", "N"}, {"Kundengruppe", value}};
  mustStage(staged.dump());
  const Json job = run({"check", "--json"}).json()["jobs"][0];
  ASSERT_EQ(job["findings"].size(), 1U);
  EXPECT_EQ(job["findings"][0], "Kundengruppe: '" + value + "' ist nicht angelegt.");
  EXPECT_EQ(job["details"],
            Json::parse(R"([{"code":"customer.group.unknown","severity":20,"field":"Kundengruppe",
      "position":null,"value":"A'\r\nVertreter1: '007' ist nicht angelegt.","stored":"",
      "text":"Kundengruppe: 'A'\r\nVertreter1: '007' ist nicht angelegt.' ist nicht angelegt."}])"));
  EXPECT_EQ(run({"check"}).output,
            "Warnung  Kunden 1  K1\n"
            "  Kundengruppe: 'A' Vertreter1: '007' ist nicht angelegt.' ist nicht angelegt.\n"
            "1 checked, 1 with findings\n");
  // One line also among the reasons of the parked job.
  erp.setOption("AutomatischVerarbeiten", "1");
  const Json parked = run({"process", "--json"}).json()["jobs"][0];
  EXPECT_EQ(parked["Fehlertext"],
            "Beim Verarbeiten wurden Warnungen festgestellt.\r\n"
            "Kundengruppe: 'A' Vertreter1: '007' ist nicht angelegt.' ist nicht angelegt.\r\n");
  EXPECT_EQ(parked["details"], job["details"]);
}

TEST_F(Explained, AFailedJobNamesRuleFieldAndPosition) {
  erp.execute("Insert Into Kundenstamm (Kundennummer, Bez1) Values ('1', 'Kontor')"_sql);
  mustStage(R"([{"type":"Kunde","Bez1":"N","JobID":"K1","Kundennummer":"2","Währung":"XTS","Vertreter2":"77"},
                      {"type":"Vertrag","JobID":"V1","Kundennummer":"9","Zustand":"I"},
                      {"type":"Auftrag","JobID":"A1","Kundennummer":"1","Positionen":
                       [{"ChildID":"P1","Positionsnummer":1,"Artikelnummer":"A9","Menge":1}]}])");
  erp.execute("Update ImportKopf Set Eingangsdatum = '31.02.2026' Where JobID = 'A1'"_sql);
  const Json jobs = run({"process", "--json", "--unevaluated"}).json()["jobs"];
  const auto brief = [&](std::size_t job) {
    std::vector<std::string> codes;
    for (const Json& detail : jobs.at(job)["details"])
      codes.push_back(detail["code"].get<std::string>() + " " + detail["field"].get<std::string>() + " " +
                      detail["value"].get<std::string>());
    return codes;
  };
  EXPECT_EQ(brief(0), (std::vector<std::string>{"customer.sales_rep.refused Vertreter2 77",
                                                "customer.currency.refused Währung XTS"}));
  EXPECT_EQ(brief(1), (std::vector<std::string>{"contract.customer.refused Kundennummer 9"}));
  EXPECT_EQ(brief(2), (std::vector<std::string>{"order.receipt_date.invalid Eingangsdatum 31.02.2026"}));
}

TEST_F(Explained, ACodeATokenAndATextWithValuesGiveTheirRules) {
  const std::string stock = "order.stock.too_small\n"
                            "  Art        Warnung\n"
                            "  Text       Lagerbestand\n"
                            "  Kürzel     LB\n"
                            "  im Fenster Achtung: Lagerbestand für Artikel '...' reicht nicht aus!\n"
                            "  Feld       Menge\n"
                            "  Was tun    Die Menge ändern, oder freigeben.\n";
  for (const char* subject : {"order.stock.too_small", "Lagerbestand", "LB",
                              "Achtung: Lagerbestand für Artikel 'A100' reicht nicht aus!"})
    EXPECT_EQ(run({"explain", subject}).output, stock) << subject;
  const auto codes = [&](const char* subject) {
    std::vector<std::string> codes;
    const Json printed = run({"explain", subject, "--json"}).json();
    for (const Json& rule : printed["rules"]) codes.push_back(rule["code"]);
    return codes;
  };
  using Codes = std::vector<std::string>;
  EXPECT_EQ(codes("Vertreter1: '007' ist nicht angelegt."), Codes{"customer.sales_rep.unknown"});
  EXPECT_EQ(codes("VS_Ort ist nicht identisch: 'a' / 'b'"), Codes{"customer.delivery.differs"});
  EXPECT_EQ(codes("Vertragsdatum ist falsch"), (Codes{"contract.date.invalid", "contract.date.missing"}));
  EXPECT_EQ(codes("Hinweis: Zur Währung 'CHF' ist kein Wechselkurs angelegt."),
            Codes{"order.exchange_rate.missing"});
  EXPECT_EQ(run({"explain", "Nirgends gesagt"}).status, 2);
}

TEST_F(Explained, AJobGivesItsFindingsWithValuesAndTheReasonsOfItsLastRun) {
  ASSERT_EQ(
      stage(R"({"type":"Kunde","Bez1":"N","JobID":"K1","Kundennummer":"1","Kundengruppe":"NEU","Land":"FR"})")
          .status,
      0);
  erp.execute("Update ImportKopf Set JobType = 12, Fehlertext = '"_sql,
              value("Die Währung: 'XTS' ist nicht angelegt."), "'"_sql);
  EXPECT_EQ(
      run({"explain", "K1"}).output,
      "Kunden 1  K1\n"
      "  Kundengruppe: 'NEU' ist nicht angelegt.\n"
      "    Warnung customer.group.unknown, Feld Kundengruppe, im Vorgang 'NEU'\n"
      "    Aus der Liste wählen, oder in den Optionen das Anlegen erlauben.\n"
      "  Neukunde im Land 'FR' mit dem Steuermerkmal des Inlands (MwSt_KZ 'IN').\n"
      "    Hinweis customer.country.abroad, Feld Land, im Vorgang 'FR', im Stamm 'IN'\n"
      "    Das Steuermerkmal in der Warenwirtschaft setzen, ehe die Aufträge des Kunden verarbeitet werden.\n"
      "  Die Währung: 'XTS' ist nicht angelegt.\n"
      "    aus der letzten Verarbeitung: customer.currency.refused\n"
      "    Die Währung berichtigen. Währungen werden nie angelegt.\n");
  const Json job = run({"explain", "K1", "--json"}).json();
  EXPECT_EQ(job["details"].size(), 2U);
  EXPECT_EQ(job["rules"].size(), 3U);
}

} // namespace
} // namespace qx
