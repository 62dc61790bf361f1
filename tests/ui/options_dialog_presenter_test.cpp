#include "ui/options_dialog_presenter.h"

#include "support/fake_session.h"
#include "support/test_erp.h"
#include "support/words.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <set>

namespace qx {
namespace {

class OptionsDialogTest : public ::testing::Test {
protected:
  std::string option(std::string_view key) {
    return Settings(erp.environment).get(applicationName, "ImportJob2", key);
  }
  std::string local(std::string_view key) {
    return Settings(erp.environment).get(applicationName, "ImportJob2", key, true);
  }
  /// Every stored option of the component as "key=text".
  std::set<std::string> stored() {
    std::set<std::string> all;
    for (const auto& row : erp.rows("Select Key, Value From Einstellungen Where Section = 'ImportJob2'"_sql))
      all.insert(row[0].text() + "=" + row[1].text());
    return all;
  }

  TestErp erp;
  OptionsDialogPresenter dialog{erp.environment};
};

TEST_F(OptionsDialogTest, ShowsEveryControlInExactlyOneGroupOfItsPage) {
  std::set<std::string_view> shown;
  for (const OptionGroup& group : optionGroups())
    for (const OptionSpec* option : group.options) {
      EXPECT_TRUE(shown.insert(option->control).second) << option->control;
      EXPECT_EQ(option->customerSpecific, group.customerSpecific) << option->key;
    }
  for (const OptionSpec* option : allOptions())
    EXPECT_EQ(shown.count(option->control) == 1, !option->control.empty()) << option->key;
}

TEST_F(OptionsDialogTest, NoTwoCaptionsOfAPageShareAnAccessKey) {
  for (const bool second : {false, true}) {
    std::set<std::string> keys;
    for (const OptionGroup& group : optionGroups())
      for (const OptionSpec* option : group.options) {
        if (group.customerSpecific != second) continue;
        const std::size_t mark = option->caption.find('&');
        ASSERT_NE(mark, std::string_view::npos) << option->caption;
        std::string key(option->caption.substr(mark + 1, option->caption[mark + 1] < 0 ? 2 : 1));
        if (key.size() == 1) key[0] = static_cast<char>(std::tolower(key[0]));
        EXPECT_TRUE(keys.insert(key).second) << option->caption;
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
  EXPECT_EQ(option("SWAuftLieferbereit"), "");
}

TEST_F(OptionsDialogTest, WhatWasNotTouchedKeepsItsText) {
  erp.setSetting("Allgemein", "Individual", "VLK");
  const std::set<std::string> before{
      "AppSettings=1",          "Löschen=Wahr",          "KundeDelete=-1",  "VTDelete=2",
      "AuftragLieferbereit=01", "KreditlimitAuftrag=-1", "abGewicht=1.000", "AutomatischVerarbeiten=2"};
  for (const std::string& each : before)
    erp.setOption(each.substr(0, each.find('=')), each.substr(each.find('=') + 1));
  dialog.load();
  EXPECT_FALSE(dialog.field("chkKundeDelete")->checked()) << "the purge deletes for exactly 1";
  EXPECT_TRUE(dialog.close());
  EXPECT_EQ(stored(), before);

  dialog.load();
  dialog.check("chkKundeDelete", true);
  dialog.check("chkVTDelete", true);
  dialog.check("chkVTDelete", false);
  dialog.check("chkLoeschen", false);
  EXPECT_TRUE(dialog.close());
  EXPECT_EQ(stored(), (std::set<std::string>{"AppSettings=1", "Löschen=0", "KundeDelete=1", "VTDelete=2",
                                             "AuftragLieferbereit=01", "KreditlimitAuftrag=-1",
                                             "abGewicht=1.000", "AutomatischVerarbeiten=2"}));
}

TEST_F(OptionsDialogTest, AReadyFlagIsOnOffOrNotSet) {
  erp.setSetting("Allgemein", "Individual", "VLK");
  erp.setOption("AppSettings", "1");
  const auto confirmed = [&](auto&& deed) {
    dialog.load();
    deed();
    dialog.close();
    dialog.load();
    EXPECT_EQ(dialog.field("chkSWLief")->value, option("SWAuftLieferbereit"));
    return option("SWAuftLieferbereit");
  };
  EXPECT_EQ(confirmed([] {}), "");
  EXPECT_EQ(stored(), std::set<std::string>{"AppSettings=1"});
  EXPECT_EQ(confirmed([&] { dialog.check("chkSWLief", false); }), "0");
  EXPECT_EQ(confirmed([&] { dialog.check("chkSWLief", true); }), "1");
  EXPECT_EQ(confirmed([&] { dialog.unset("chkSWLief"); }), "");
  dialog.unset("chkLoeschen");
  EXPECT_EQ(dialog.field("chkLoeschen")->value, "0") << "no other box has a third state";
}

TEST_F(OptionsDialogTest, NumbersAreRefusedAtTheirField) {
  erp.setSetting("Allgemein", "Individual", "VLK");
  dialog.load();
  const std::pair<const char*, const char*> refused[] = {
      {"1.000",
       "Versandart wechselt ab Gewicht (kg): '1.000' kann 1000 oder 1 bedeuten. Geben Sie bitte eines "
       "davon ein."},
      {"schwer",
       "Versandart wechselt ab Gewicht (kg): 'schwer' ist keine Zahl. Bitte berichtigen Sie das Feld."},
      {"1.000,5",
       "Versandart wechselt ab Gewicht (kg): '1.000,5' ist keine Zahl. Bitte berichtigen Sie das Feld."}};
  for (const auto& [typed, message] : refused) {
    erp.desktop.shown.clear();
    dialog.type("txtGewicht", typed);
    EXPECT_FALSE(dialog.close());
    ASSERT_EQ(erp.desktop.shown.size(), 1U);
    EXPECT_EQ(erp.desktop.shown.front().text, message);
    EXPECT_EQ(dialog.wrongControl(), "txtGewicht");
  }
  EXPECT_EQ(stored(), std::set<std::string>{});
  for (const char* typed : {"1000", "31,5", "28.25", ""}) {
    dialog.load();
    dialog.type("txtGewicht", typed);
    EXPECT_TRUE(dialog.close());
    EXPECT_EQ(option("abGewicht"), typed);
  }
  EXPECT_EQ(dialog.wrongControl(), "");
}

TEST_F(OptionsDialogTest, EveryFieldOfTheSecondPageIsStoredUnderItsOwnName) {
  erp.setSetting("Allgemein", "Individual", "VLK");
  dialog.load();
  const auto names =
      pairs("txtZA_RG_VS=ZAVSRG txtZAVS=ZAVS txtVAZA=VAZA txtGewicht=abGewicht txtVAGewicht=VSabGewicht "
            "txtFrachtTransport=FrachtTransport txtFrachGebuehr=FrachtGebuehr txtVAKunde=VAKunde "
            "txtZAKunde=ZAKunde txtNeukundenRabatt=NeukundenRabatt");
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

TEST_F(OptionsDialogTest, ABusyDatabaseCostsNothingThatWasChosen) {
  class NoWait final : public BusyWait {
    bool goOn(std::chrono::milliseconds /*waited*/) override { return false; }
  } noWait;
  dialog.load();
  dialog.check("chkFensterpos", true);
  dialog.check("chkLoeschen", true);
  const auto other = erp.secondConnection();
  other->beginWork(nullptr);
  EXPECT_FALSE(dialog.close(&noWait));
  EXPECT_EQ(local("FensterpositionSpeichern"), "1") << "the workplace has a store of its own";
  ASSERT_EQ(erp.desktop.shown.size(), 1U);
  EXPECT_THAT(
      erp.desktop.shown.front().text,
      testing::StartsWith("Die Optionen wurden nicht gespeichert. Die Datenbank wird gerade von einem "
                          "anderen Programm benutzt."));
  EXPECT_TRUE(dialog.field("chkLoeschen")->checked());
  other->rollbackWork();
  EXPECT_EQ(stored(), std::set<std::string>{});
  EXPECT_TRUE(dialog.close(&noWait));
  EXPECT_EQ(option("Löschen"), "1");
  EXPECT_EQ(option("AppSettings"), "1");
}

TEST(OptionsOfAHost, AnAssignmentThatCannotBeReadLeavesTheCreationAsItIs) {
  FakeWorld world;
  world.session->settings = {{{"ImportJob2", "KostenzuordnungAuftrag"}, "1"},
                             {{"ImportJob2", "KostAutomatischAnlegen"}, "1"}};
  const auto before = world.session->settings;
  world.session->refused = {"KostenzuordnungAuftrag"};
  OptionsDialogPresenter dialog(world.environment);
  dialog.load();
  EXPECT_FALSE(dialog.field("chkCreateKost")->enabled);
  EXPECT_EQ(dialog.notice(),
            "Einige Optionen konnten nicht gelesen werden; sie sind gesperrt und bleiben, wie sie sind.");
  world.session->refused.clear();
  dialog.check("chkKostZuordnung", false);
  EXPECT_TRUE(dialog.close());
  for (const auto& [key, text] : before) EXPECT_EQ(world.session->settings[key], text) << key.second;
  EXPECT_FALSE(world.session->settings.contains({"ImportJob2", "AppSettings"}));
}

TEST(OptionsOfAHost, AStoreThatCannotBeWrittenIsToldAndARefusedSettingIsSkipped) {
  FakeWorld world;
  OptionsDialogPresenter dialog(world.environment);
  EXPECT_TRUE(dialog.close()) << "nothing was loaded";
  EXPECT_TRUE(world.session->settings.empty());
  dialog.load();
  dialog.check("chkLoeschen", true);
  world.session->failing = true;
  EXPECT_FALSE(dialog.close());
  ASSERT_EQ(world.desktop.shown.size(), 1U);
  world.session->failing = false;
  world.session->refused = {"Ändern"};
  EXPECT_TRUE(dialog.close());
  EXPECT_EQ(world.session->settings.at({"ImportJob2", "Löschen"}), "1");
  EXPECT_FALSE(world.session->settings.contains({"ImportJob2", "Ändern"}));
  EXPECT_EQ(world.desktop.shown.size(), 1U);
}

} // namespace
} // namespace qx
