// Protocol, address index, units, open items and the small components.
#include "standalone_fixture.h"

namespace qx::erp {
namespace {

using StandaloneComponents = StandaloneErpTest;

TEST_F(StandaloneComponents, ProtocolLinesAreNumberedAndKeepUnsetColumnsEmpty) {
  const auto protocol = erpOf({}).createProtokoll();
  const std::string id = protocol->CreateProtokoll(database(), "Titel", "Import", "LST_ImportJob");
  protocol->AddNewRecord();
  protocol->SetField(Protokoll::shortText, 0, "Kunden");
  protocol->SetField(Protokoll::longText, 0, "Bez1: Ä\r\nBez2: ");
  protocol->UpdateRecord();
  protocol->AddNewRecord();
  protocol->SetField(Protokoll::shortText, 8, "1");
  protocol->UpdateRecord();

  const auto lines = file.open("Select * From Protokollpositionen"_sql);
  ASSERT_EQ(lines->recordCount(), 2U);
  EXPECT_EQ(lines->text("ID"), id);
  EXPECT_EQ(lines->value("Zeile"), Value(1));
  EXPECT_EQ(lines->text("Text0"), "Kunden");
  EXPECT_EQ(lines->text("Memo0"), "Bez1: Ä\r\nBez2: ");
  EXPECT_TRUE(lines->value("Text8").isNull());
  lines->moveNext();
  EXPECT_EQ(lines->value("Zeile"), Value(2));
  EXPECT_EQ(lines->text("Text8"), "1");
  EXPECT_TRUE(lines->value("Text0").isNull()) << "nothing is left of the line before";
}

TEST_F(StandaloneComponents, RowsThatTheDatabaseLeavesOutAreFailures) {
  auto erp = erpOf({});
  const auto protocol = erp.createProtokoll();
  protocol->CreateProtokoll(database(), "Titel", "Import", "LST_ImportJob");
  file.execute("Insert Into Kundenstamm (Kundennummer) Values ('K1')"_sql);
  for (const Sql& trigger :
       {sql("Create Trigger a Before Insert On Protokolle Begin Select Raise(Ignore); End"_sql),
        sql("Create Trigger b Before Insert On Protokollpositionen Begin Select Raise(Ignore); End"_sql),
        sql("Create Trigger c Before Insert On Adressindex Begin Select Raise(Ignore); End"_sql)})
    database().execute(trigger);
  protocol->AddNewRecord();
  EXPECT_THROW(protocol->UpdateRecord(), NotInserted);
  EXPECT_THROW(protocol->CreateProtokoll(database(), "Titel", "Import", "LST_ImportJob"), NotInserted);
  EXPECT_THROW(erp.createAdressindex(database())->CreateIndex("K1", 1), NotInserted);
}

TEST_F(StandaloneComponents, AReopenedProtocolGoesOnAndAnUnknownOneCannotBeOpened) {
  auto erp = erpOf({});
  const auto add = [](Protokoll& protocol) {
    protocol.AddNewRecord();
    protocol.UpdateRecord();
  };
  const auto first = erp.createProtokoll();
  const std::string id = first->CreateProtokoll(database(), "", "", "");
  add(*first);
  const auto second = erp.createProtokoll();
  EXPECT_FALSE(second->OpenProtokoll(database(), "gelöscht"));
  EXPECT_THROW(second->AddNewRecord(), std::logic_error);
  ASSERT_TRUE(second->OpenProtokoll(database(), id));
  add(*second);
  add(*first);
  EXPECT_EQ(file.count("Select Max(Zeile) From Protokollpositionen"_sql), 3);
}

TEST_F(StandaloneComponents, ProtocolsOfTheSameSecondAreTwo) {
  auto erp = erpOf({"", makeDate(2026, 1, 2), "", ""});
  const auto protocol = erp.createProtokoll();
  const std::string id = protocol->CreateProtokoll(database(), "", "", "");
  EXPECT_NE(protocol->CreateProtokoll(database(), "", "", ""), id);
  EXPECT_LE(id.size(), 32U);
  EXPECT_EQ(file.single("Select Datum From Protokolle"_sql), Value("20260102103000"))
      << "the session's day at the clock's time";
}

TEST_F(StandaloneComponents, ProtocolRefusesUnknownColumnsAndLinesThatWereNotBegun) {
  const auto protocol = erpOf({}).createProtokoll();
  protocol->CreateProtokoll(database(), "", "", "");
  EXPECT_THROW(protocol->SetField(Protokoll::shortText, 0, "x"), std::logic_error);
  EXPECT_THROW(protocol->UpdateRecord(), std::logic_error);
  protocol->AddNewRecord();
  EXPECT_THROW(protocol->SetField(Protokoll::shortText, 9, "x"), std::logic_error);
  EXPECT_THROW(protocol->SetField(Protokoll::longText, 1, "x"), std::logic_error);
  EXPECT_THROW(protocol->SetField(11, 0, "x"), std::logic_error);
}

TEST_F(StandaloneComponents, AddressIndexHasOneRowPerCustomerAndKind) {
  const auto index = erpOf({}).createAdressindex(database());
  file.execute("Insert Into Kundenstamm (Kundennummer, Suchbegriff, Bez1, Bez3, PLZ, Ort) Values "
               "('k1', 'ÖLMÜHLE', 'Ölmühle Straß', 'Halle 2', '00117', 'Übersee')"_sql);
  index->CreateIndex("K1", 1);
  EXPECT_EQ(file.single("Select Suchtext From Adressindex Where Kundennummer = 'K1'"_sql),
            Value("ölmühle ölmühle straß halle 2 00117 übersee"));
  file.execute("Update Kundenstamm Set Suchbegriff = Null, Ort = 'O''Ort'"_sql);
  index->CreateIndex("k1", 1);
  index->CreateIndex("k1", 2);
  EXPECT_EQ(file.count("Select Count(*) From Adressindex"_sql), 2);
  EXPECT_EQ(file.single("Select Suchtext From Adressindex Where Art = 1"_sql),
            Value("ölmühle straß halle 2 00117 o'ort"));
  file.execute("Delete From Kundenstamm"_sql);
  index->CreateIndex("k1", 1);
  index->CreateIndex("unbekannt", 1);
  EXPECT_EQ(file.count("Select Count(*) From Adressindex"_sql), 1) << "the row of kind 2 was not asked about";
}

TEST_F(StandaloneComponents, UnitsConvertByTheArticlesOwnFactorFirst) {
  file.execute("Insert Into Umrechnungen (Artikelnummer, Mengeneinheit, Basiseinheit, Faktor) Values "
               "('', 'KT', 'ST', 12), ('A', 'ST', 'KT', 0.1), ('B', 'KT', 'ST', 0)"_sql);
  const auto s = session();
  const auto factor = [&](std::string_view article, std::string_view base, std::string_view wanted) {
    return s->Umrechnungen().GetUmrechnung({article, "ME Lager", "ME Verkauf", base, wanted});
  };
  EXPECT_DOUBLE_EQ(factor("X", "ST", "KT"), 12);
  EXPECT_DOUBLE_EQ(factor("X", "KT", "ST"), 1.0 / 12);
  EXPECT_DOUBLE_EQ(factor("A", "ST", "KT"), 10) << "the article's own conversion, reversed";
  EXPECT_DOUBLE_EQ(factor("B", "ST", "KT"), 12) << "a factor of 0 is none";
  EXPECT_DOUBLE_EQ(factor("X", "st", "ST"), 1);
  EXPECT_THROW(factor("X", "ST", "PAL"), std::runtime_error);
}

TEST_F(StandaloneComponents, BalanceStaysInItsCurrencyUnlessThereAreSeveral) {
  file.execute("Insert Into Währungen (Währung, Wechselkurs) Values ('TAL', 2), ('LEER', Null)"_sql);
  file.execute("Insert Into OffenePosten (Kundennummer, Betrag, Währung) Values ('1', 0.1, 'TAL'), "
               "('1', 0.2, 'tal'), ('2', 100, 'TAL'), ('2', 10, 'EUR'), ('2', 1, Null)"_sql);
  const auto items = erpOf({}).createFibuUebergabe();
  EXPECT_THROW(items->GetOPSaldo("1"), std::logic_error) << "no connection yet";
  items->setConnection(database());
  EXPECT_EQ(items->GetOPSaldo("1").amount, 0.3) << "summed as amounts, not as doubles";
  EXPECT_EQ(items->GetOPSaldo("1").currency, "TAL");
  EXPECT_DOUBLE_EQ(items->GetOPSaldo("2").amount, 61);
  EXPECT_EQ(items->GetOPSaldo("2").currency, "");
  EXPECT_EQ(items->GetOPSaldo("3").amount, 0);
  file.execute("Insert Into Währungen (Währung, Wechselkurs) Values ('DRI', 3)"_sql);
  file.execute("Insert Into OffenePosten (Kundennummer, Belegnummer, Betrag, Währung) Values "
               "('4', '1', 1, 'DRI'), ('4', '2', 1, '')"_sql);
  EXPECT_EQ(items->GetOPSaldo("4").amount, 1.3333) << "each part is an amount before it is added";
  EXPECT_DOUBLE_EQ(items->convert(10, "EUR", "TAL"), 20);
  EXPECT_DOUBLE_EQ(items->convert(10, "TAL", ""), 5);
  EXPECT_THROW(items->convert(1, "LEER", ""), std::runtime_error);
  EXPECT_THROW(items->convert(1, "", "FEHLT"), std::runtime_error);
  EXPECT_EQ(items->convert(1, "FEHLT", "fehlt"), 1);
}

TEST_F(StandaloneComponents, ApplicationDirectoryEndsWithoutSeparator) {
  EXPECT_EQ(erpOf({"", {}, "/var/daten/", ""}).createProfile()->GetAppPath(), "/var/daten");
  EXPECT_EQ(erpOf({"", {}, "/", ""}).createProfile()->GetAppPath(), "/");
}

} // namespace
} // namespace qx::erp
