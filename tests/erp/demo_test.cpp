// The invented company is complete in itself: whatever it names exists.
#include "erp/demo_data.h"
#include "erp/prices.h"
#include "standalone_fixture.h"

namespace qx::erp {
namespace {

class DemoTest : public StandaloneErpTest {
protected:
  DemoTest() {
    WorkUnit unit(database());
    fillDemoData(database());
    staged = stageDemoJobs(database(), makeDate(2026, 11, 24));
    unit.commit();
  }
  std::int64_t count(const Sql& statement) { return file.count(statement); }

  std::size_t staged = 0;
};

TEST_F(DemoTest, CustomersNameOnlyCodesThatExist) {
  EXPECT_EQ(count(sql("Select Count(*) From Kundenstamm"_sql)), 302);
  EXPECT_EQ(
      count(
          sql("Select Count(*) From Kundenstamm k Where Not Exists (Select 1 From Kundengruppen c Where "
              "c.Kundengruppe = k.Kundengruppe) Or Not Exists (Select 1 From Zahlungsarten c Where "
              "c.Zahlungsart = k.Zahlungsart) Or Not Exists (Select 1 From Versandtexte c Where c.Versandart "
              "= k.Versandart) Or Not Exists (Select 1 From Zahlungsbedingungen c Where c.ZahlbedSchl = "
              "k.ZahlungsbedSchl)"_sql)),
      0);
  EXPECT_EQ(
      count(sql(
          "Select Count(*) From Kundenstamm k Where k.KZDivers Is Null And (Not Exists (Select 1 From "
          "Vertreter c Where c.VertreterNr = k.VertreterNr1) Or Not Exists (Select 1 From Kreditinstitute "
          "c Where c.Bankleitzahl = k.Bankleitzahl) Or (k.Preisliste Is Not Null And Not Exists (Select 1 "
          "From PreislistenKopf c Where c.Preisliste = k.Preisliste)))"_sql)),
      0);
  EXPECT_EQ(
      count(sql("Select Count(*) From (Select Bez1 From Kundenstamm Group By Bez1 Having Count(*) > 1)"_sql)),
      0)
      << "customers of the same name";
}

TEST_F(DemoTest, ContractsFitKindObjectAndCustomer) {
  EXPECT_EQ(count(sql("Select Count(*) From Verträge"_sql)), 75);
  EXPECT_EQ(
      count(sql(
          "Select Count(*) From Verträge v Where Not Exists (Select 1 From VertragsGegenständePos p Where "
          "p.VertrGegenstandsNr = v.VertrGegenstandsNr And p.Vertragsart = v.Vertragsart) Or Not Exists "
          "(Select 1 From Kundenstamm k Where k.Kundennummer = v.Kundennummer)"_sql)),
      0);
}

TEST_F(DemoTest, EveryArticleIsTaxableAndAllButTheSampleHaveAPrice) {
  EXPECT_EQ(
      count(sql(
          "Select Count(*) From Artikelstamm a Where Not Exists (Select 1 From Steuerschlüsselzuordnung z "
          "Join Steuerschlüssel s On s.Steuerschlüssel = z.Steuerschlüssel Where z.MwStKZArtikel = "
          "a.MwSt_KZ And z.MwStKZKunde = 'IN')"_sql)),
      0);
  SalesPrices prices(file.diagnostics);
  prices.Init(database());
  std::string without;
  const auto articles = file.open("Select Artikelnummer, Mengeneinheit From Artikelstamm"_sql);
  for (; !articles->eof(); articles->moveNext()) {
    SalesPrice found;
    const auto result = prices.GetVKPreis({"70005", articles->text("Artikelnummer"), 1,
                                           articles->text("Mengeneinheit"), makeDate(2026, 11, 24)},
                                          found);
    if (result == Preisfindung::notFound || result == Preisfindung::failed)
      without += articles->text("Artikelnummer") + " ";
  }
  EXPECT_EQ(articles->recordCount(), 207U);
  EXPECT_EQ(without, "MUSTER-1 FEHLPREIS-1 ");
}

TEST_F(DemoTest, JobsOfEveryKindWaitAndPositionsBelongToThem) {
  EXPECT_EQ(count(sql("Select Count(*) From ImportKopf"_sql)), static_cast<std::int64_t>(staged));
  for (const std::int16_t kind : {10, 20, 30, 40})
    EXPECT_GT(count(sql("Select Count(*) From ImportKopf Where JobType = "_sql, number(kind))), 0) << kind;
  EXPECT_EQ(
      count(
          sql("Select Count(*) From ImportPos p Where Not Exists (Select 1 From ImportKopf k Where k.JobID = "
              "p.JobID)"_sql)),
      0);
  EXPECT_EQ(count(sql("Select Count(*) From ImportKopf Where Length(JobID) <> 32"_sql)), 0);
  EXPECT_EQ(
      file.single("Select Eingangsdatum From ImportKopf Where Kundennummer = '70301' And JobType = 10"_sql),
      Value("12.11.2026"));
}

} // namespace
} // namespace qx::erp
