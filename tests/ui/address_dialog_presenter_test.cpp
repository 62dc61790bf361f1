#include "dialog_fixture.h"

#include "ui/address_dialog_presenter.h"

namespace qx {
namespace {

using Block = AddressDialogPresenter::Block;

class AddressDialogTest : public DialogTest {
protected:
  AddressDialogTest() {
    add("Adressenstamm", {{"Kundennummer", "20001"},
                          {"Adressnummer", "7"},
                          {"Bez1", "Hafenbau Lager"},
                          {"Strasse", "Kai 3"},
                          {"PLZ", "18055"},
                          {"Ort", "Rostock"}});
  }

  static void enter(AddressDialogPresenter& dialog, std::string_view control, std::string_view text) {
    dialog.type(dialog.find(control).value(), text);
    dialog.leave(dialog.find(control).value());
  }
  static const ControlState& state(const AddressDialogPresenter& dialog, std::string_view control) {
    return dialog.control(dialog.find(control).value());
  }
  /// The controls that show a stored value.
  static std::vector<std::string> differing(const AddressDialogPresenter& dialog) {
    std::vector<std::string> names;
    for (std::size_t index = 0; index < dialog.specs().size(); ++index)
      if (dialog.control(index).master) {
        EXPECT_EQ(dialog.control(index).picture, CheckStatus::Warning);
        names.emplace_back(dialog.specs()[index]->name);
      }
    return names;
  }

  const Adresse warehouse{"Hafenbau Lager", "", "", "Kai 3", "", "18055", "Rostock"};
};

TEST_F(AddressDialogTest, LinesAreComparedWithTheAddressOfTheKeyAndNullCountsAsEmpty) {
  Adresse lines = warehouse;
  lines.Strasse = "Kai 4";
  AddressDialogPresenter dialog(context, "20001", {"", "7", lines}, {"20001", "7", warehouse}, false);
  EXPECT_THAT(differing(dialog), testing::ElementsAre("txtVS_Strasse"));
  EXPECT_EQ(state(dialog, "txtVS_Strasse").master, "Kai 3");
  EXPECT_EQ(dialog.standing(Block::Delivery),
            "Weicht von der Stammadresse ab: Hafenbau Lager, Kai 3, 18055, Rostock");
  EXPECT_EQ(dialog.standing(Block::Invoice), "Gleich der Stammadresse.");

  dialog.takeMaster(dialog.find("txtVS_Strasse").value());
  EXPECT_THAT(differing(dialog), testing::IsEmpty());
  EXPECT_EQ(dialog.standing(Block::Delivery), "Gleich der Stammadresse.");
  EXPECT_TRUE(dialog.changed());
}

TEST_F(AddressDialogTest, ABlockWithoutLinesMeansTheStoredAddress) {
  AddressDialogPresenter dialog(context, "20001", {"20001", "7", {}}, {}, false);
  EXPECT_THAT(differing(dialog), testing::IsEmpty());
  EXPECT_EQ(dialog.standing(Block::Delivery),
            "Es gilt die Stammadresse: Hafenbau Lager, Kai 3, 18055, Rostock");
  // No key at all is the job's own customer.
  EXPECT_EQ(dialog.standing(Block::Invoice),
            "Es gilt die Stammadresse: Hafenbau GmbH, Am Kai 1, 20457, Hamburg, DE");

  EXPECT_TRUE(dialog.takeStored(Block::Delivery));
  EXPECT_EQ(dialog.block(Block::Delivery), (AddressBlock{"20001", "7", warehouse}));
  dialog.clear(Block::Delivery);
  EXPECT_EQ(dialog.block(Block::Delivery), (AddressBlock{"20001", "7", {}}));
  EXPECT_FALSE(dialog.changed());
}

TEST_F(AddressDialogTest, AKeyThatIsStoredNowhereIsMarkedWhereItIsWrong) {
  AddressDialogPresenter dialog(context, "20001", {"20001", "8", warehouse}, {"5", "7", {}}, false);
  EXPECT_EQ(state(dialog, "txtVS_AdrNr").message, "Die Adresse 8 des Kunden 20001 ist nicht angelegt.");
  EXPECT_EQ(state(dialog, "txtVS_KdNr").picture, CheckStatus::Clean);
  EXPECT_EQ(state(dialog, "txtRG_KdNr").message, "Der Kunde 5 ist nicht angelegt.");
  EXPECT_EQ(dialog.standing(Block::Delivery),
            "Eigene Anschrift; es gibt zu diesen Nummern keine Stammadresse.");
  EXPECT_FALSE(dialog.takeStored(Block::Invoice));

  enter(dialog, "txtVS_AdrNr", "7");
  EXPECT_EQ(state(dialog, "txtVS_AdrNr").picture, CheckStatus::Clean);
  EXPECT_EQ(dialog.standing(Block::Delivery), "Gleich der Stammadresse.");
}

TEST_F(AddressDialogTest, TheCustomerWhomTheJobCreatesIsNoFault) {
  AddressDialogPresenter dialog(context, "30000", {}, {"30000", "", warehouse}, false);
  EXPECT_EQ(state(dialog, "txtVS_KdNr").picture, CheckStatus::Clean);
  EXPECT_EQ(state(dialog, "txtRG_KdNr").picture, CheckStatus::Clean);
  EXPECT_EQ(dialog.standing(Block::Delivery),
            "Es gilt die Anschrift des Vorgangs; der Kunde ist noch nicht angelegt.");
  EXPECT_EQ(dialog.standing(Block::Invoice), "Eigene Anschrift; der Kunde ist noch nicht angelegt.");
}

TEST_F(AddressDialogTest, AnAddressIsChosenAmongThoseOfItsCustomer) {
  AddressDialogPresenter dialog(context, "20001", {"", "", {}}, {}, false);
  chosen = {"20001", "7"};
  EXPECT_TRUE(dialog.lookUp(dialog.find("txtVS_AdrNr").value()));
  EXPECT_EQ(dialog.block(Block::Delivery), (AddressBlock{"20001", "7", {}}));
  EXPECT_TRUE(dialog.hasStored(Block::Delivery));
  EXPECT_THAT(lookupsOpened,
              testing::ElementsAre("AUSK_Adressauskunft|Kundennummer='20001' or Kundennummer is null"));
  chosen.clear();
  EXPECT_FALSE(dialog.lookUp(dialog.find("txtVS_KdNr").value()));
  EXPECT_EQ(dialog.block(Block::Delivery), (AddressBlock{"20001", "7", {}}));
}

TEST_F(AddressDialogTest, AChosenGeneralAddressFillsTheLinesInPlaceOfAKey) {
  add("Adressenstamm",
      {{"Adressnummer", "MESSE"}, {"Bez1", "Messe"}, {"Strasse", "Ring 1"}, {"Ort", "Köln"}});
  const Adresse fair{"Messe", "", "", "Ring 1", "", "", "Köln"};
  AddressDialogPresenter dialog(context, "20001", {"20001", "7", warehouse}, {}, false);
  chosen = {"", "MESSE"};
  EXPECT_TRUE(dialog.lookUp(dialog.find("txtVS_AdrNr").value()));
  EXPECT_EQ(dialog.block(Block::Delivery), (AddressBlock{"", "", fair}));
  // One that is gone meanwhile leaves everything as it is.
  chosen = {"", "FORT"};
  EXPECT_FALSE(dialog.lookUp(dialog.find("txtVS_AdrNr").value()));
  EXPECT_EQ(dialog.block(Block::Delivery), (AddressBlock{"", "", fair}));
}

TEST_F(AddressDialogTest, AFailureIsToldAndLeavesWhatWasTyped) {
  AddressDialogPresenter dialog(context, "20001", {"20001", "8", warehouse}, {}, false);
  erp.execute("Alter Table Adressenstamm Rename To Fort"_sql);
  enter(dialog, "txtVS_AdrNr", "7");
  EXPECT_THAT(dialog.notice(), testing::StartsWith("Die Stammadresse kann nicht gelesen werden: "));
  EXPECT_EQ(erp.diagnostics.entries.size(), 1U);
  EXPECT_EQ(dialog.block(Block::Delivery), (AddressBlock{"20001", "7", warehouse}));
}

TEST_F(AddressDialogTest, AReadOnlyBlockStaysAsItIs) {
  AddressDialogPresenter dialog(context, "20001", {"20001", "7", {}}, {}, true);
  EXPECT_FALSE(dialog.takeStored(Block::Delivery));
  dialog.type(dialog.find("txtVS_Ort").value(), "Kiel");
  EXPECT_FALSE(dialog.lookUp(dialog.find("txtVS_KdNr").value()));
  EXPECT_EQ(dialog.block(Block::Delivery), (AddressBlock{"20001", "7", {}}));
}

} // namespace
} // namespace qx
