// Which store a setting comes from, how options are read as numbers, and what a failing store costs.
#include "settings/settings.h"
#include "support/fake_session.h"
#include "support/words.h"

#include <gtest/gtest.h>

#include <optional>
#include <set>

namespace qx {
namespace {

class SettingsTest : public ::testing::Test {
protected:
  void setOption(std::string_view key, std::string_view text) {
    world_.session->settings[{"ImportJob2", std::string(key)}] = text;
  }

  FakeWorld world_;
  Settings settings_{world_.environment};
};

TEST_F(SettingsTest, SharedOnesIgnoreTheApplicationName) {
  settings_.save(applicationName, "ImportJob2", "Löschen", "1");
  EXPECT_EQ(settings_.get("ImportJob", "ImportJob2", "Löschen"), "1");
  EXPECT_EQ(settings_.get(applicationName, "ImportJob2", "Löschen"), "1");
  EXPECT_EQ(settings_.get(applicationName, "Process", "Löschen"), "") << "another section";
}

TEST_F(SettingsTest, LocalOnesBelongToTheirApplicationAndNeverReachTheErp) {
  settings_.save(applicationName, "MAIN", "MainWidth", "800", true);
  EXPECT_EQ(settings_.get(applicationName, "MAIN", "MainWidth", true), "800");
  EXPECT_EQ(settings_.get("ImportJob", "MAIN", "MainWidth", true), "");
  EXPECT_EQ(settings_.get(applicationName, "MAIN", "MainWidth"), "");
  EXPECT_TRUE(world_.session->settings.empty());
}

TEST_F(SettingsTest, ADefaultServesOnlyForAnAbsentKey) {
  EXPECT_EQ(settings_[option::homeCurrency], "DM");
  world_.session->settings[{"Allgemein", "Landeswährung"}] = "";
  EXPECT_EQ(settings_[option::homeCurrency], "");
}

TEST_F(SettingsTest, ReadAsNumbersOnlyWhatFitsSixteenBits) {
  struct Case {
    std::string_view text;
    std::int16_t expected;
    bool on;
  };
  constexpr std::int16_t fallback = 7;
  // A text that is not a number counts as off, whatever the fallback.
  for (const Case& c :
       {Case{"0", 0, false}, Case{"1", 1, true}, Case{" 2 ", 2, true}, Case{"+3", 3, true},
        Case{"-1", -1, true}, Case{"32767", 32767, true}, Case{"-32768", -32768, true},
        Case{"32768", fallback, false}, Case{"-32769", fallback, false}, Case{"", fallback, false},
        Case{"Wahr", fallback, false}, Case{"1.0", fallback, false}, Case{"1x", fallback, false},
        Case{"99999999999999999999", fallback, false}}) {
    setOption("AutomatischVerarbeiten", c.text);
    EXPECT_EQ(settingToInt16(c.text).value_or(fallback), c.expected) << c.text;
    EXPECT_EQ(settings_[option::automatic], c.on) << c.text;
  }
  EXPECT_EQ(settings_[option::mayDelete], std::nullopt) << "never written";
}

TEST_F(SettingsTest, AreOneOnlyWhenTheyReadExactlyOne) {
  for (const std::string_view text : {"", "0", "2", " 1", "1 ", "01", "+1", "Wahr"}) {
    setOption("NewMail", text);
    EXPECT_FALSE(settings_[option::orderBeingReadIn]) << text;
  }
  setOption("NewMail", "1");
  EXPECT_TRUE(settings_[option::orderBeingReadIn]);
}

TEST_F(SettingsTest, SwitchOnTheCustomerSpecificModeByItsExactMark) {
  for (const std::string_view text : {"", "vlk", "VLK ", "VLK2"}) {
    world_.session->settings[{"Allgemein", "Individual"}] = text;
    EXPECT_FALSE(settings_[option::customerSpecific]) << text;
  }
  world_.session->settings[{"Allgemein", "Individual"}] = "VLK";
  EXPECT_TRUE(settings_[option::customerSpecific]);
}

TEST_F(SettingsTest, AFailingStoreGivesTheDefaultAndIsTold) {
  world_.session->failing = true;
  world_.localSettings.failing = true;
  for (const bool local : {false, true}) {
    world_.diagnostics.entries.clear();
    EXPECT_EQ(settings_.get(applicationName, "ImportJob2", "Ändern", local), "");
    settings_.save(applicationName, "ImportJob2", "Ändern", "1", local);
    ASSERT_EQ(world_.diagnostics.entries.size(), 2U) << world_.diagnostics.text();
    for (const auto& entry : world_.diagnostics.entries)
      EXPECT_NE(entry.where.find("ImportJob2/Ändern"), std::string::npos) << entry.where;
  }
  EXPECT_EQ(settings_[option::costCentreLabel], "Kostenstelle");
  EXPECT_TRUE(world_.desktop.shown.empty()) << "no box comes up";
}

TEST_F(SettingsTest, ARunSkipsARefusedAccessButNoStoreThatCannotGoOn) {
  const Settings ofRun(world_.environment, SettingTrap::Refusals);
  const Settings untrapped(world_.environment, SettingTrap::Nothing);
  world_.localSettings.failing = true;
  EXPECT_EQ(ofRun.get(applicationName, "ImportJob2", "Ändern", true), "");
  EXPECT_THROW((void)untrapped.get(applicationName, "ImportJob2", "Ändern", true), std::runtime_error);
  world_.session->failing = true;
  EXPECT_THROW((void)ofRun[option::compareAddresses], StoreError);
  EXPECT_THROW((void)ofRun[option::costCentreLabel], StoreError);
  EXPECT_THROW(ofRun.save(option::protocolId, "1"), StoreError);
  EXPECT_EQ(world_.diagnostics.entries.size(), 5U) << world_.diagnostics.text();
  world_.environment.session.reset();
  EXPECT_FALSE(ofRun[option::compareAddresses]) << "no session is no failing store";
}

TEST_F(SettingsTest, WithoutASessionSharedOnesAreEmptyAndLocalOnesWork) {
  world_.environment.session.reset();
  settings_.save(applicationName, "MAIN", "MainTop", "5", true);
  EXPECT_EQ(settings_.get(applicationName, "MAIN", "MainTop", true), "5");
  EXPECT_TRUE(world_.diagnostics.entries.empty());
  EXPECT_EQ(settings_.get(applicationName, "ImportJob2", "Löschen"), "");
  settings_.save(applicationName, "ImportJob2", "Löschen", "1");
  EXPECT_EQ(world_.diagnostics.entries.size(), 2U) << world_.diagnostics.text();
}

TEST(Options, GiveTheDialogItsControlsInTheOrderOfLoading) {
  std::string firstPage;
  std::string secondPage;
  std::set<std::string_view> controls;
  for (const OptionSpec* option : allOptions()) {
    EXPECT_FALSE(option->english.empty() || option->german.empty()) << option->key;
    if (option->control.empty()) continue;
    EXPECT_TRUE(controls.insert(option->control).second) << option->control << " shows two keys";
    EXPECT_EQ(option->section, "ImportJob2");
    (option->customerSpecific ? secondPage : firstPage).append(option->key).append(" ");
  }
  EXPECT_EQ(
      firstPage,
      "Löschen Ändern FensterpositionSpeichern FenstergrößeSpeichern GelöschteVerträge AutomatischPrüfen "
      "AutomatischVerarbeiten WarnungLagerbestand KundenKundengruppe KundenVertreter KundenZahlungsart "
      "KundenBankleitzahl KundeAdressProof KundeDelete VTDelete VTImportModified AuftragDelete "
      "KostenzuordnungAuftrag KostAutomatischAnlegen AuftragLieferbereit AuftragFakturierbereit "
      "KreditlimitAuftrag ");
  EXPECT_EQ(secondPage,
            "ZAVSRG ZAVS VAZA abGewicht VSabGewicht FrachtTransport FrachtGebuehr VAKunde ZAKunde "
            "SWAuftLieferbereit SWAuftFakturierbereit NeukundenRabatt ");
}

TEST(Options, JudgeACheckByTheRuleOfItsReaders) {
  struct Case {
    std::string_view key;
    std::string_view on;
    std::string_view off;
    std::string_view unknown;
  };
  for (const Case& c :
       {Case{"AutomatischVerarbeiten", "1 2 -1", "0 00", "true Wahr ja 1.0 99999"},
        Case{"SWAuftLieferbereit", "1 -1", "0", "Wahr"}, Case{"KreditlimitAuftrag", "1 2", "0", "-1 true"},
        Case{"KostenzuordnungAuftrag", "1 7", "0", "-1 Wahr"},
        Case{"KundeDelete", "1", "0", "2 -1 01 true Wahr"}, Case{"AuftragLieferbereit", "1", "0", "2 Wahr"},
        Case{"NewMail", "1", "0", "2"},
        Case{"Löschen", "1 2 -1 70000 1,5 0.5 True wahr WAHR", "0 0,0 False falsch", "ja 1,5,2"},
        Case{"Ändern", "Wahr", "0", "x"}}) {
    const OptionSpec* key = findOption("ImportJob2", c.key);
    ASSERT_NE(key, nullptr) << c.key;
    for (const std::string& text : split(c.on)) EXPECT_EQ(checkState(*key, text), true) << c.key << text;
    for (const std::string& text : split(c.off)) EXPECT_EQ(checkState(*key, text), false) << c.key << text;
    for (const std::string& text : split(c.unknown))
      EXPECT_EQ(checkState(*key, text), std::nullopt) << c.key << text;
    EXPECT_EQ(checkState(*key, ""), std::nullopt) << c.key;
  }
}

TEST(Options, KeepOnlyWhatBelongsToOneScreenInTheLocalStore) {
  std::set<std::string_view> local;
  for (const OptionSpec* option : allOptions())
    if (option->isLocal()) local.insert(option->key);
  EXPECT_EQ(local,
            (std::set<std::string_view>{"FensterpositionSpeichern", "FenstergrößeSpeichern", "MainWidth",
                                        "MainHeight", "MainState", "MainLeft", "MainTop"}));
}

TEST(Options, AreFoundBySectionAndKey) {
  ASSERT_NE(findOption("Process", "OnProcess"), nullptr);
  EXPECT_NE(findOption("Process", "OnProcess"), findOption("ImportJob2", "OnProcess"));
  ASSERT_NE(findOption("Allgemein", "Landeswährung"), nullptr);
  EXPECT_EQ(findOption("Allgemein", "Landeswährung")->fallback, "DM");
  EXPECT_EQ(findOption("Allgemein", "Löschen"), nullptr);
}

} // namespace
} // namespace qx
