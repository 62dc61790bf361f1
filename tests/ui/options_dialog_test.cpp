#include "ui/options_dialog.h"

#include "support/test_erp.h"

#include <gtest/gtest.h>

#include <cctype>
#include <set>

namespace qx {
namespace {

class OptionsDialogTest : public ::testing::Test {
protected:
  std::string option(std::string_view key) { return Settings(erp.environment).option(key); }
  std::string local(std::string_view key) {
    return Settings(erp.environment).get(applicationName, optionSection, key, true);
  }

  TestErp erp;
  OptionsDialog dialog{erp.environment};
};

TEST_F(OptionsDialogTest, ShowsEveryControlInExactlyOneGroupOfItsPage) {
  std::set<std::string_view> shown;
  for (const OptionGroup& group : optionGroups())
    for (const OptionText& text : group.options) {
      EXPECT_TRUE(shown.insert(text.control).second) << text.control;
      EXPECT_FALSE(text.hint.empty()) << text.control;
      for (const OptionKey& key : optionKeys())
        if (key.control == text.control) {
          EXPECT_EQ(key.customerSpecific, group.customerSpecific) << key.key;
        }
    }
  for (const OptionKey& key : optionKeys())
    EXPECT_EQ(shown.count(key.control) == 1, !key.control.empty()) << key.key;
}

TEST_F(OptionsDialogTest, NoTwoCaptionsOfAPageShareAnAccessKey) {
  for (const bool second : {false, true}) {
    std::set<std::string> keys;
    for (const OptionGroup& group : optionGroups())
      for (const OptionText& text : group.options) {
        if (group.customerSpecific != second) continue;
        const std::size_t mark = text.caption.find('&');
        ASSERT_NE(mark, std::string_view::npos) << text.caption;
        std::string key(text.caption.substr(mark + 1, text.caption[mark + 1] < 0 ? 2 : 1));
        if (key.size() == 1) key[0] = static_cast<char>(std::tolower(key[0]));
        EXPECT_TRUE(keys.insert(key).second) << text.caption;
      }
  }
}

TEST_F(OptionsDialogTest, TheFirstConfirmationWritesEveryKeyOnItsStore) {
  dialog.load();
  EXPECT_EQ(dialog.fields().size(), 22U);
  dialog.check("chkLoeschen", true);
  dialog.check("chkFensterpos", true);
  dialog.close();
  EXPECT_EQ(option("AppSettings"), "1");
  EXPECT_EQ(option("Löschen"), "1");
  EXPECT_EQ(option("Ändern"), "0");
  EXPECT_EQ(local("FensterpositionSpeichern"), "1");
  EXPECT_EQ(local("FenstergrößeSpeichern"), "0");
  EXPECT_EQ(option("FensterpositionSpeichern"), "");
  for (const OptionField& field : dialog.fields())
    if (field.option->store == OptionStore::Shared) {
      EXPECT_NE(option(field.option->key), "") << field.option->key;
    }
  EXPECT_FALSE(erp.connection().inWork());
}

TEST_F(OptionsDialogTest, CancellingWritesNothing) {
  dialog.load();
  dialog.check("chkLoeschen", true);
  dialog.cancel();
  dialog.close();
  EXPECT_EQ(option("AppSettings"), "");
  EXPECT_EQ(option("Löschen"), "");
}

TEST_F(OptionsDialogTest, CostsAreCreatedOnlyWhereTheirAssignmentIsChecked) {
  erp.setOption("KostAutomatischAnlegen", "1");
  dialog.load();
  EXPECT_FALSE(dialog.field("chkCreateKost")->enabled);
  EXPECT_FALSE(dialog.field("chkCreateKost")->checked());
  dialog.check("chkCreateKost", true);
  EXPECT_FALSE(dialog.field("chkCreateKost")->checked()) << "a disabled box cannot be ticked";

  dialog.check("chkKostZuordnung", true);
  EXPECT_TRUE(dialog.field("chkCreateKost")->enabled);
  dialog.check("chkCreateKost", true);
  dialog.check("chkKostZuordnung", false);
  dialog.close();
  EXPECT_EQ(option("KostAutomatischAnlegen"), "0");
  EXPECT_EQ(option("KostenzuordnungAuftrag"), "0");
}

TEST_F(OptionsDialogTest, BoxesAreTickedForTheTextsThatTurnTheirOptionOn) {
  erp.setOption("Löschen", "Wahr");
  erp.setOption("VTDelete", "-1");
  erp.setOption("KundeDelete", "99999");
  erp.setOption("AutomatischVerarbeiten", "-1");
  dialog.load();
  EXPECT_TRUE(dialog.field("chkLoeschen")->checked());
  EXPECT_TRUE(dialog.field("chkAutomatschVerarbeiten")->checked());
  EXPECT_FALSE(dialog.field("chkVTDelete")->checked()) << "the purge takes exactly 1";
  EXPECT_FALSE(dialog.field("chkKundeDelete")->checked());
}

TEST_F(OptionsDialogTest, TheSecondPageBelongsToCustomerSpecificMode) {
  erp.setOption("ZAVS", "unberührt");
  dialog.load();
  EXPECT_EQ(dialog.field("txtZAVS"), nullptr);
  // The mode that comes on meanwhile must not write fields that were never read.
  erp.setSetting("Allgemein", "Individual", "VLK");
  dialog.close();
  EXPECT_EQ(option("ZAVS"), "unberührt");

  dialog.load();
  ASSERT_NE(dialog.field("txtZAVS"), nullptr);
  EXPECT_EQ(dialog.field("txtZAVS")->value, "unberührt");
  dialog.type("txtZAVS", " NN ");
  dialog.check("chkSWFak", true);
  dialog.close();
  EXPECT_EQ(option("ZAVS"), " NN ");
  EXPECT_EQ(option("SWAuftFakturierbereit"), "1");
  EXPECT_EQ(option("SWAuftLieferbereit"), "0");
}

TEST_F(OptionsDialogTest, EveryFieldOfTheSecondPageIsStoredUnderItsOwnName) {
  erp.setSetting("Allgemein", "Individual", "VLK");
  dialog.load();
  const std::pair<std::string_view, std::string_view> names[] = {{"txtZA_RG_VS", "ZAVSRG"},
                                                                 {"txtZAVS", "ZAVS"},
                                                                 {"txtVAZA", "VAZA"},
                                                                 {"txtGewicht", "abGewicht"},
                                                                 {"txtVAGewicht", "VSabGewicht"},
                                                                 {"txtFrachtTransport", "FrachtTransport"},
                                                                 {"txtFrachGebuehr", "FrachtGebuehr"},
                                                                 {"txtVAKunde", "VAKunde"},
                                                                 {"txtZAKunde", "ZAKunde"},
                                                                 {"txtNeukundenRabatt", "NeukundenRabatt"}};
  int number = 0;
  for (const auto& [control, key] : names) dialog.type(control, std::to_string(++number));
  dialog.close();
  number = 0;
  for (const auto& [control, key] : names) EXPECT_EQ(option(key), std::to_string(++number)) << key;
}

TEST_F(OptionsDialogTest, WhatCouldNotBeReadIsNotWritten) {
  erp.setOption("Löschen", "1");
  const auto session = std::move(erp.environment.session);
  erp.environment.session = nullptr;
  dialog.load();
  EXPECT_NE(dialog.notice(), "");
  erp.environment.session = session;
  dialog.close();
  EXPECT_EQ(option("Löschen"), "1");
  EXPECT_EQ(option("AppSettings"), "");
  EXPECT_EQ(local("FensterpositionSpeichern"), "0") << "the local store could be read";

  erp.localSettings.failing = true;
  dialog.load();
  EXPECT_FALSE(dialog.field("chkFensterpos")->enabled);
  dialog.check("chkFensterpos", true);
  erp.localSettings.failing = false;
  dialog.close();
  EXPECT_EQ(local("FensterpositionSpeichern"), "0");
  EXPECT_EQ(option("AppSettings"), "1");
}

} // namespace
} // namespace qx
