#include "rules/master_data.h"

#include "support/erp_file.h"

#include <gtest/gtest.h>

#include <stdexcept>

using namespace qx;

namespace {

class MasterDataTest : public ::testing::Test {
protected:
  void run(const Sql& statement) { erp.connection().execute(statement); }

  ErpFile erp;
  MasterData data{erp.environment};
};

} // namespace

TEST_F(MasterDataTest, EveryFieldFindsItsCodesInItsOwnTable) {
  run(sql("Insert Into Zahlungsarten (Zahlungsart) Values ('c1')"_sql));
  run(sql("Insert Into Vertreter (VertreterNr) Values ('c2')"_sql));
  run(sql("Insert Into PreislistenKopf (Preisliste) Values ('c3')"_sql));
  run(sql("Insert Into Kundengruppen (Kundengruppe) Values ('c4')"_sql));
  run(sql("Insert Into Versandtexte (Versandart) Values ('c5')"_sql));
  run(sql("Insert Into Vertragsarten (Vertragsart) Values ('c6')"_sql));
  run(sql("Insert Into Zahlungsbedingungen (ZahlbedSchl) Values ('c7')"_sql));
  run(sql("Insert Into Währungen (Währung) Values ('c8')"_sql));
  run(sql("Insert Into Kreditinstitute (Bankleitzahl) Values ('c9')"_sql));
  run(sql("Insert Into Kundenstamm (Kundennummer) Values ('c10')"_sql));
  const std::string_view fields[] = {"Zahlungsart",  "Vertreter",   "Preisliste",      "Kundengruppe",
                                     "Versandart",   "Vertragsart", "ZahlungsbedSchl", "Währung",
                                     "Bankleitzahl", "Hauptkonto"};
  for (std::size_t i = 0; i < std::size(fields); ++i)
    for (std::size_t code = 1; code <= std::size(fields); ++code)
      EXPECT_EQ(data.codeExists(fields[i], "C" + std::to_string(code)), code == i + 1) << fields[i] << code;
  EXPECT_FALSE(data.codeExists("Zahlungsart", ""));
  EXPECT_THROW(data.codeExists("Zahlungsweise", "c1"), std::invalid_argument);
}

TEST_F(MasterDataTest, UnknownCodesAreNoErrors) {
  EXPECT_EQ(data.GetArtikelbezeichnung("x"), "");
  EXPECT_EQ(data.GetBankverbindung("x"), "");
  EXPECT_EQ(data.GetVertragsgegenstand("x"), "");
  EXPECT_EQ(data.salesRepText("x"), "");
  EXPECT_EQ(data.shippingMethodText("x"), "");
  EXPECT_FALSE(data.GetTextbaustein("A", "1", "", "D"));
  EXPECT_FALSE(data.GetDiversKunde("x"));
  EXPECT_FALSE(data.isAccessory("x"));
  EXPECT_EQ(data.orderWeight(7), 0);
  EXPECT_EQ(data.orderValue(7), 0);
}

TEST_F(MasterDataTest, RepTextHasThePlaceOnALineOfItsOwn) {
  run(sql("Insert Into Vertreter (VertreterNr, Bez1, Bez2, Ort) Values "
          "('1','Ahl','KG','Köln'), ('2','Berg',null,''), ('3','Cox','','Ulm')"_sql));
  EXPECT_EQ(data.salesRepText("1"), "Ahl KG\r\nOrt: Köln");
  EXPECT_EQ(data.salesRepText("2"), "Berg");
  EXPECT_EQ(data.salesRepText("3"), "Cox\r\nOrt: Ulm");
}

TEST_F(MasterDataTest, TextBlockIsFoundByAllFourKeys) {
  run(sql(
      "Insert Into Textbausteine (Textart, TextNummer, ZusatztextNummer, SprachKZ, Kurztext, Schriftgröße) "
      "Values ('K','1','Z','D','Gruß',11)"_sql));
  run(sql("Insert Into Textbausteine (Textart, TextNummer, ZusatztextNummer, SprachKZ, Kurztext, Langtext, "
          "WoDrucken, Schriftart, Schriftgröße, Schriftstil) "
          "Values ('K','2','Z','D','kurz','lang','LR','Arial',9,'Fett')"_sql));
  const auto found = data.GetTextbaustein("K", "1", "Z", "D");
  ASSERT_TRUE(found);
  EXPECT_EQ(found->Kurztext, "Gruß");
  EXPECT_EQ(found->Schriftgröße, 11);
  EXPECT_EQ(found->Langtext, "");
  const auto full = data.GetTextbaustein("K", "2", "Z", "D");
  ASSERT_TRUE(full);
  EXPECT_EQ(full->Kurztext + "|" + full->Langtext + "|" + full->WoDrucken, "kurz|lang|LR");
  EXPECT_EQ(full->Schriftart + "|" + full->Schriftstil, "Arial|Fett");
  EXPECT_EQ(full->Schriftgröße, 9);
  EXPECT_FALSE(data.GetTextbaustein("K", "1", "", "D"));
}

TEST_F(MasterDataTest, SumsOfAnOrderCountTheirOwnLines) {
  run(sql("Insert Into Auftragspos (Auftragsnummer, Zeilentyp, Erfassungsschema, Menge, Preis, PosGewicht, "
          "Ind_Zahl4) Values (7,'K','Zubehoer',2,10,1.5,4), (7,'K','Marketing',1,3,2,100), "
          "(7,'T','Zubehoer',1,null,null,50), (8,'K','Zubehoer',1,1000,1000,1000)"_sql));
  EXPECT_EQ(data.orderWeight(7), 3.5);
  EXPECT_EQ(data.orderValue(7), 23);
  EXPECT_EQ(data.accessoryValue(7), 8);
}

TEST_F(MasterDataTest, DatabaseErrorsReachTheCaller) {
  run(sql("Drop Table Versandtexte"_sql));
  EXPECT_THROW(data.shippingMethodText("1"), DatabaseError);
  erp.environment.connection = nullptr;
  EXPECT_THROW(data.shippingMethodText("1"), StoreError);
}
