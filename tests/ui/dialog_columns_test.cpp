// Each control of the dialogs stores what was typed in the column that the manual names for it.
#include "dialog_fixture.h"
#include "support/words.h"

namespace qx {
namespace {

constexpr std::string_view ofCustomersAndOrders =
    "txtKundennummer=Kundennummer txtHauptkonto=Hauptkonto txtTelefon=Telefon txtFax=Telefax "
    "tdbVertreter1=Vertreter1 tdbPreisliste=Preisliste tdbZahlungsart=Zahlungsart "
    "tdbZahlungsbed=ZahlungsbedSchl txtVersandKdn=VS_KdNr txtVersandAdr=VS_AdrNr tdbVersandart=Versandart "
    "txtRechnungKdnr=RG_KdNr txtRechnungAdr=RG_AdrNr txtKonto=Konto txtBlz=BLZ "
    "txtKreditinstitut=Kreditinstitut txtHinweis=Bemerkung txtIndFild1=IndFild1 txtIndFild3=IndFild3 "
    "txtIndFild4=IndFild4";

class DialogColumns : public DialogTest {
protected:
  /// "control=column" of each.
  void expectOwnColumns(std::string_view jobId, std::string_view list) {
    const auto controls = pairs(list);
    const auto dialog = opened(jobId);
    std::vector<std::string> typed;
    for (const auto& [control, column] : controls) {
      typed.push_back(std::to_string(typed.size() + 101));
      dialog->type(indexOf(*dialog, control), typed.back());
    }
    ASSERT_TRUE(dialog->save());
    for (std::size_t i = 0; i < controls.size(); ++i)
      EXPECT_EQ(field(jobId, ColumnName(controls[i].second)).text(), typed[i]) << controls[i].first;
  }
};

TEST_F(DialogColumns, OfACustomerAreItsOwn) {
  customerSpecific();
  stageCustomer("K1", "20001");
  expectOwnColumns("K1", ofCustomersAndOrders);
  stageCustomer("K2", "20001");
  expectOwnColumns("K2", "txtSuchbegriff=Suchbegriff tdbKundengruppe=Kundengruppe txtBez1=Bez1 txtBez2=Bez2 "
                         "txtBez3=Bez3 txtStrasse=Strasse txtPLZ=PLZ txtOrt=Ort txtLand=Land "
                         "tdbWährung=Währung tdbWährungEG=WährungEingabe txtIndFild2=IndFild2");
}

TEST_F(DialogColumns, OfAnOrderAreItsOwn) {
  customerSpecific();
  stageOrder("O1");
  expectOwnColumns("O1", ofCustomersAndOrders);
}

TEST_F(DialogColumns, OfAContractAreItsOwn) {
  stageContract("C1");
  expectOwnColumns(
      "C1", "txtKundennummer=Kundennummer txtVertragsnummer=Vertragsnummer "
            "txtVertragsgegenstand=Artikelnummer tdbVertragsart=Vertragsart txtVertragstext=Vertragstext "
            "tdbAnzahl=Menge tdbBetrag=Preis cboIntervall=Intervall txtGrund=Kündigungsgrund");
}

TEST_F(DialogColumns, AnAddedPositionIsNumberedBehindTheLast) {
  stageOrder("O1");
  stagePosition("O1", 7, "A100", 1);
  stagePosition("O1", 3, "B200", 1);
  const auto dialog = opened("O1");
  dialog->kind().grid->editing()->addRow();
  ASSERT_TRUE(dialog->save());
  EXPECT_EQ(text("Select Group_Concat(Positionsnummer) From (Select Positionsnummer From ImportPos "
                 "Order By Positionsnummer)"_sql),
            "3,7,8");
}

} // namespace
} // namespace qx
