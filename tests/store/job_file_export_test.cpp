#include "job_file_fixture.h"

#include "support/full_disk.h"

#include <filesystem>
#include <utility>

using namespace qx;

namespace {

class JobFileExportTest : public JobFileTest {
protected:
  /// A row in which every column holds its own name, numbers where a line has numbers.
  void stageHeader(std::int16_t jobType) {
    const auto row = erp.open("Select * From ImportKopf Where JobID = ''"_sql);
    fillWithNames(*row);
    row->set("JobType", jobType);
    row->set("ImportType", 12);
    row->set("Status", 20);
    row->set("Intervall", 6);
    row->set("Preistyp", 7);
    row->set("Menge", 2.5);
    row->set("Preis", 1234567.25);
    row->set("PreisabweichungGrund", 3);
    row->update();
  }
  void stagePosition() {
    const auto row = erp.open("Select * From ImportPos Where ChildID = ''"_sql);
    fillWithNames(*row);
    row->set("JobType", 50);
    row->set("Positionsnummer", "10");
    row->set("Auslieferungsmenge", 10.0);
    row->set("Fakturierbereit", true);
    row->set("Fakturiermenge", 0.00001);
    row->set("Lieferbereit", false);
    row->set("Menge", -1.5);
    row->set("Preis", 0.1);
    row->set("Rabatt", 3.25);
    row->set("Preiseinheit", Value::null());
    row->update();
  }
  static void fillWithNames(Recordset& row) {
    row.addNew();
    for (std::size_t i = 0; i < row.fieldCount(); ++i)
      row.set(ColumnName(row.fieldName(i)), Value(row.fieldName(i)));
  }
  void stage(std::string_view jobId, std::int16_t jobType, std::string_view received = "01.02.2026") {
    execute("Insert Into ImportKopf (JobID, JobType, Eingangsdatum) Values ('"_sql, value(jobId), "', "_sql,
            number(jobType), ", '"_sql, value(received), "')"_sql);
  }
};

constexpr std::string_view head = "\"Quorvex ImportJob V 2.0\";\r\n";

} // namespace

TEST_F(JobFileExportTest, ACustomerLineHasTheseFields) {
  stageHeader(12);
  EXPECT_EQ(exported(),
            std::string(head) +
                R"("12";"JobID";"Bemerkung";"Betreff";"Bez1";"Bez2";"Bez3";"BLZ";"Eingangsdatum";"EMail";)"
                R"("Fehlertext";"Hauptkonto";"Konto";"Kreditinstitut";"Kundengruppe";"Kundennummer";"Land";)"
                R"("Ort";"PLZ";"Provisionsgruppe";"RG_AdrNr";"RG_Bez1";"RG_Bez2";"RG_Bez3";"RG_KdNr";)"
                R"("RG_Land";"RG_Ort";"RG_PLZ";"RG_Straße";"20";"Strasse";"Suchbegriff";"Telefax";"Telefon";)"
                R"("UstIdentNr";"Versandart";"Vertreter1";"Vertreter2";"Vertreter3";"VS_AdrNr";"VS_Bez1";)"
                R"("VS_Bez2";"VS_Bez3";"VS_KdNr";"VS_Land";"VS_Ort";"VS_PLZ";"VS_Straße";"Währung";)"
                R"("WährungEingabe";"Zahlungsart";"ZahlungsbedSchl";"Zahlungsweise";"12";"IndFild1";)"
                R"("IndFild2";"IndFild3";)"
                "\r\n");
}

TEST_F(JobFileExportTest, AContractLineHasTheseFields) {
  for (const std::int16_t code : {20, 43}) {
    execute("Delete From ImportKopf"_sql);
    stageHeader(code);
    EXPECT_EQ(exported(),
              std::string(head) + "\"" + std::to_string(code) +
                  R"(";"JobID";"Bemerkung";"Eingangsdatum";"Fehlertext";"6";"Kundennummer";)"
                  R"("Kündigungsgrund";"2,5";"1234567,25";"20";"Vertragsart";"Vertragsbeginn";)"
                  R"("Vertragsdatum";"Vertragsende";"Vertragsnummer";"Vertragstext";"Artikelnummer";)"
                  R"("Zustand";"3";"PreisabweichungGenehmigender";"PreisabweichungDatum";)"
                  R"("PreisabweichungBemerkung";)"
                  "\r\n");
  }
}

TEST_F(JobFileExportTest, AnOrderLineHasTheseFields) {
  stageHeader(30);
  EXPECT_EQ(exported(),
            std::string(head) +
                R"("30";"JobID";"Bemerkung";"Betreff";"Bez1";"Bez2";"Bez3";"BLZ";"Eingangsdatum";"EMail";)"
                R"("Fehlertext";"Hauptkonto";"Konto";"Kreditinstitut";"Kundengruppe";"Kundennummer";"Land";)"
                R"("Ort";"PLZ";"Preisliste";"Provisionsgruppe";"RG_AdrNr";"RG_Bez1";"RG_Bez2";"RG_Bez3";)"
                R"("RG_KdNr";"RG_Land";"RG_Ort";"RG_PLZ";"RG_Straße";"20";"Strasse";"Suchbegriff";"Telefax";)"
                R"("Telefon";"UstIdentNr";"Versandart";"Vertragsnummer";"Vertreter1";"Vertreter2";)"
                R"("Vertreter3";"VS_AdrNr";"VS_Bez1";"VS_Bez2";"VS_Bez3";"VS_KdNr";"VS_Land";"VS_Ort";)"
                R"("VS_PLZ";"VS_Straße";"Währung";"WährungEingabe";"Zahlungsart";"ZahlungsbedSchl";)"
                R"("Zahlungsweise";"7";"IndFild1";"IndFild2";"IndFild3";"IndFild4";)"
                "\r\n");
}

TEST_F(JobFileExportTest, APositionLineHasTheseFieldsInGermanForm) {
  stagePosition();
  EXPECT_EQ(exported(), std::string(head) +
                            R"("50";"JobID";"ChildID";"Artikellangtext";"Artikelnummer";"10";"Wahr";"1E-05";)"
                            R"("Falsch";"-1,5";"Mengeneinheit";"10";"0,1";"3,25";"";)"
                            "\r\n");
}

TEST_F(JobFileExportTest, AVersionOneFileHasEachJobWithItsPositionsAndReplacesWhatItCannotCarry) {
  stageHeader(-11);
  stagePosition();
  execute("Update ImportKopf Set Bez1 = 'a;b\"c', Fehlertext = 'eins' || char(13, 10) || 'zwei'"_sql);
  execute("Update ImportKopf Set AdresseAendernJN = 1, ZahlungsartAendernJN = 0"_sql);
  EXPECT_EQ(exported(JobFileVersion::One),
            "\"Quorvex ImportJob V 1.0.1\";\r\n"
            R"("-11";"JobID";"20";"Eingangsdatum";"Kundennummer";"Wahr";"Suchbegriff";"a,b'c";"Bez2";"Bez3";)"
            R"("Strasse";"Land";"PLZ";"Ort";"Telefon";"Telefax";"EMail";"Kundengruppe";"Vertreter1";)"
            R"("Vertreter2";"Vertreter3";"Falsch";"Zahlungsart";"Konto";"BLZ";"Kreditinstitut";"Bemerkung";)"
            R"("Vertragsnummer";"Vertragsdatum";"Vertragsbeginn";"Zahlungsweise";"eins zwei";"Betreff";)"
            R"("Versandart";"ZahlungsbedSchl";"Provisionsgruppe";"UstIdentNr";"Währung";"WährungEingabe";)"
            "\r\n"
            R"("1001";"JobID";"ChildID";"10";"Vertragsart";"Artikelnummer";"-1,5";"0,1";)"
            "\r\n");
}

TEST_F(JobFileExportTest, OldestJobsComeFirstDeletedOnesDoNotTravelAndAllPositionsDo) {
  stage("neu", 10, "15.01.2026");
  stage("alt", 33, "02.12.2025");
  stage("gelöscht", 44);
  stage("unbekannt", 17);
  execute("Insert Into ImportPos (JobID, ChildID) Values ('gelöscht', 'p')"_sql);
  const JobFileReport report =
      exportJobFile(erp.environment, file("out.edi"), JobFileVersion::Two, &observer);
  EXPECT_EQ(report.counts.jobs, 2);
  EXPECT_EQ(report.counts.positions, 1);
  EXPECT_EQ(report.counts.skipped, 2);
  EXPECT_EQ(observer.lastDone, observer.lastTotal);
  const std::string text = textFromCodePage(erp.folder.read("out.edi"));
  EXPECT_LT(text.find("\"33\";\"alt\";"), text.find("\"10\";\"neu\";"));
  // A position without a code is written, too.
  EXPECT_NE(text.find("\r\n\"\";\"gelöscht\";\"p\";"), std::string::npos);
}

TEST_F(JobFileExportTest, EmptyTablesGiveTheBannerOnly) {
  EXPECT_EQ(exported(), head);
  EXPECT_EQ(exported(JobFileVersion::One), "\"Quorvex ImportJob V 1.0.1\";\r\n");
}

TEST_F(JobFileExportTest, CharactersThatTheCodePageLacksAreToldOncePerJob) {
  stage("a", 10);
  stage("b", 10);
  execute("Update ImportKopf Set Bez1 = 'Ж', Bez2 = '€ё' Where JobID = 'a'"_sql);
  EXPECT_NE(exported().find("\"\";\"?\";\"€?\";"), std::string::npos);
  // Without the entry that this host has no application directory, which concerns no job.
  std::erase_if(erp.diagnostics.entries, [](const auto& entry) { return entry.job.empty(); });
  ASSERT_EQ(erp.diagnostics.entries.size(), 1U) << erp.diagnostics.text();
  EXPECT_EQ(erp.diagnostics.entries[0].job, "a");
}

TEST_F(JobFileExportTest, AFullDiskKeepsTheFileThatWasThereAndTheLinesWrittenSoFar) {
  {
    WorkUnit unit(erp.connection());
    for (int i = 0; i < 3000; ++i) stage("job" + std::to_string(i), 10);
    unit.commit();
  }
  erp.folder.write("out.edi", "die alte Datei");
  for (const char* backup : {"out.edi.bak", "out.edi.bak2"}) {
    JobFileReport report;
    {
      const FullDisk full(300'000);
      report = exportJobFile(erp.environment, file("out.edi"), JobFileVersion::Two);
    }
    EXPECT_EQ(report.end, JobFileEnd::Failed);
    EXPECT_EQ(report.backup, file(backup));
    EXPECT_FALSE(showExportResult(erp.environment, report));
    EXPECT_NE(erp.desktop.shown.back().text.find(report.backup), std::string::npos);
    EXPECT_EQ(erp.desktop.shown.back().icon, MessageIcon::Information);
    EXPECT_EQ(erp.folder.read("out.edi").substr(0, head.size()), head);
  }
  // A second failure does not overwrite what the first one kept.
  EXPECT_EQ(erp.folder.read("out.edi.bak"), "die alte Datei");
  for (const auto& entry : std::filesystem::directory_iterator(erp.folder.path()))
    EXPECT_FALSE(entry.path().filename().string().starts_with(".")) << entry.path();
}

TEST_F(JobFileExportTest, AFailureOfTheDatabaseKeepsTheOldFileToo) {
  stage("a", 20);
  erp.folder.write("out.edi", "die alte Datei");
  execute("Alter Table ImportKopf Drop Column Kündigungsgrund"_sql);
  const JobFileReport report = exportJobFile(erp.environment, file("out.edi"), JobFileVersion::Two);
  EXPECT_EQ(report.end, JobFileEnd::Failed);
  EXPECT_EQ(erp.folder.read("out.edi"), head);
  EXPECT_EQ(erp.folder.read("out.edi.bak"), "die alte Datei");
}

TEST_F(JobFileExportTest, WhatIsNoPlainFileIsWrittenDirectlyOrNotAtAll) {
  stage("a", 10);
  EXPECT_EQ(exportJobFile(erp.environment, "/dev/full", JobFileVersion::Two).end, JobFileEnd::Failed);
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
  EXPECT_EQ(exportJobFile(erp.environment, erp.folder.path().string(), JobFileVersion::Two).end,
            JobFileEnd::NoFile);
  EXPECT_EQ(exportJobFile(erp.environment, file("fehlt/out.edi"), JobFileVersion::Two).end,
            JobFileEnd::Failed);
  // A link stays a link.
  erp.folder.write("ziel.edi", "alt");
  std::filesystem::create_symlink(file("ziel.edi"), file("out.edi"));
  exported();
  EXPECT_TRUE(std::filesystem::is_symlink(file("out.edi")));
  EXPECT_NE(erp.folder.read("ziel.edi"), "alt");
}

TEST_F(JobFileExportTest, TheFilesOfTheInstallationAreNeverReplacedUnderAnyName) {
  stage("a", 10);
  std::filesystem::create_symlink(erp.path, file("link.edi"));
  std::filesystem::create_hard_link(erp.path, file("zweit.edi"));
  // The journal of this name is not there: a file in its place would be played back into the database.
  for (const char* name :
       {"erp.db", "link.edi", "zweit.edi", "erp.db-wal", "erp.db-shm", "erp.db-journal", "./erp.db"}) {
    for (const JobFileVersion version : {JobFileVersion::One, JobFileVersion::Two})
      EXPECT_EQ(exportJobFile(erp.environment, file(name), version).end, JobFileEnd::TargetRefused) << name;
    EXPECT_EQ(jobs(), "a ") << name;
  }
  EXPECT_EQ(exportJobFile(erp.environment, "", JobFileVersion::Two).end, JobFileEnd::NoFile);
  EXPECT_EQ(erp.secondConnection()->open(sql("Select JobID From ImportKopf"_sql))->text("JobID"), "a");
  const JobFileReport report = exportJobFile(erp.environment, erp.path, JobFileVersion::Two);
  EXPECT_FALSE(showExportResult(erp.environment, report));
  EXPECT_TRUE(
      erp.desktop.shown.back().text.ends_with("Die Datei gehört zur Datenbank und wird nicht überschrieben."))
      << erp.desktop.shown.back().text;
}

TEST_F(JobFileExportTest, TheFileBesideTheTargetTakesNobodysNameAndKeepsTheMode) {
  stage("a", 10);
  erp.folder.write("precious", "unberührt");
  std::filesystem::create_symlink(file("precious"), file("out.edi.part"));
  exported();
  EXPECT_EQ(erp.folder.read("precious"), "unberührt");
  const auto mode = [&] { return std::filesystem::status(file("out.edi")).permissions(); };
  EXPECT_EQ(mode(), std::filesystem::perms(0600));
  std::filesystem::permissions(file("out.edi"), std::filesystem::perms(0640));
  exported();
  EXPECT_EQ(mode(), std::filesystem::perms(0640));
  // A link to a file that is not there yet leads to that file.
  std::filesystem::create_symlink("neu.edi", file("link.edi"));
  ASSERT_EQ(exportJobFile(erp.environment, file("link.edi"), JobFileVersion::Two).end, JobFileEnd::Complete);
  EXPECT_TRUE(std::filesystem::is_symlink(file("link.edi")));
  EXPECT_EQ(erp.folder.read("neu.edi").substr(0, head.size()), head);
}

TEST_F(JobFileExportTest, AFileShowsOneStateWhoeverWritesMeanwhile) {
  /// Another program replaces a job, position and all, while the headers are written.
  class Writer final : public JobFileObserver {
  public:
    explicit Writer(Connection& connection) : connection_(connection) {}
    void progress(std::uintmax_t /*done*/, std::uintmax_t /*total*/) override {
      if (std::exchange(written_, true)) return;
      WorkUnit unit(connection_);
      connection_.execute(sql("Delete From ImportPos"_sql));
      connection_.execute(sql("Insert Into ImportKopf (JobID, JobType) Values ('neu', 30)"_sql));
      connection_.execute(sql("Insert Into ImportPos (JobID, ChildID, JobType) Values ('neu', 'N', 50)"_sql));
      unit.commit();
    }

  private:
    Connection& connection_;
    bool written_ = false;
  };
  stage("alt", 30);
  execute("Insert Into ImportPos (JobID, ChildID, JobType) Values ('alt', 'P', 50)"_sql);
  const auto other = erp.secondConnection();
  Writer writer(*other);
  ASSERT_EQ(exportJobFile(erp.environment, file("out.edi"), JobFileVersion::Two, &writer).end,
            JobFileEnd::Complete);
  const std::string written = erp.folder.read("out.edi");
  EXPECT_NE(written.find("\"30\";\"alt\";"), std::string::npos);
  EXPECT_NE(written.find("\"50\";\"alt\";\"P\";"), std::string::npos);
  EXPECT_EQ(written.find("neu"), std::string::npos) << written;
  // The view has ended: units of work begin again.
  WorkUnit unit(erp.connection());
  unit.commit();
  EXPECT_EQ(jobs(), "alt neu ");
}
