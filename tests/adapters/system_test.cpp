// Tests of the system adapters.
#include "adapters/system/console_desktop.h"
#include "adapters/system/processes.h"
#include "adapters/system/random_guids.h"
#include "adapters/system/stream_diagnostics.h"
#include "adapters/system/system_sources.h"
#include "adapters/system/whole_characters.h"
#include "support/fake_desktop.h"
#include "support/fake_system.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>
#include <string>
#include <string_view>

namespace qx {
namespace {

TEST(RandomGuids, CarryVersionAndVariantAndKeepEveryOtherBit) {
  const auto filledWith = [](std::uint8_t byte) {
    RandomGuidSource source([byte](std::span<std::uint8_t> bytes) {
      std::ranges::fill(bytes, byte);
      return true;
    });
    return jobKey(source.create());
  };
  EXPECT_EQ(filledWith(0x00), "00000000000040008000000000000000");
  EXPECT_EQ(filledWith(0xFF), "FFFFFFFFFFFF4FFFBFFFFFFFFFFFFFFF");
}

TEST(RandomGuids, KeepTheOrderOfTheRandomBytes) {
  RandomGuidSource source([](std::span<std::uint8_t> bytes) {
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::uint8_t>(i + 1);
    return true;
  });
  EXPECT_EQ(jobKey(source.create()), "0102030405064708890A0B0C0D0E0F10");
}

TEST(RandomGuids, AreNullWithoutRandomNumbersAndDifferOtherwise) {
  RandomGuidSource broken([](std::span<std::uint8_t>) { return false; });
  EXPECT_FALSE(broken.create());
  SystemGuidSource source;
  std::set<std::string> keys;
  for (int i = 0; i < 1000; ++i) keys.insert(jobKey(source.create()));
  EXPECT_EQ(keys.size(), 1000U);
  EXPECT_FALSE(keys.contains(""));
}

TEST(SystemProcesses, KnowThisOneAndNoneOfAnImpossibleNumber) {
  const SystemProcesses processes;
  const auto self = processes.self();
  ASSERT_TRUE(self);
  const ProcessState found = processes.find(self->number);
  EXPECT_TRUE(found.exists);
  EXPECT_EQ(found.startTime, self->startTime);
  EXPECT_FALSE(processes.find(999999999).exists);
  EXPECT_FALSE(thisMachine().hostName.empty());
}

TEST(ConsoleDesktop, WritesEveryBoxAsOneLineAndTellsTheDiagnostics) {
  std::ostringstream output;
  RecordingDiagnostics diagnostics;
  ConsoleDesktop desktop(output, diagnostics);
  desktop.show({"Erste Zeile\r\n\r\nzweite", "Import"});
  desktop.show({"Text"});
  EXPECT_EQ(output.str(), "Import: Erste Zeile zweite\nQuorvex Import: Text\n");
  EXPECT_EQ(diagnostics.text(), "Import | Erste Zeile zweite | \nQuorvex Import | Text | \n");
}

TEST(ConsoleDesktop, NeverAgreesAndNeverChoosesAFile) {
  std::ostringstream output;
  RecordingDiagnostics diagnostics;
  ConsoleDesktop desktop(output, diagnostics);
  EXPECT_FALSE(desktop.ask({"Job löschen?", "Löschen"}));
  EXPECT_FALSE(desktop.chooseFile("Export", "EDI (*.edi)|*.edi", FileUse::Writing));
  EXPECT_TRUE(output.str().starts_with("Löschen: Job löschen?")) << output.str();
  EXPECT_EQ(std::ranges::count(output.str(), '\n'), 2) << "both are told";
  EXPECT_EQ(diagnostics.entries.size(), 2U);
}

TEST(StreamDiagnostics, CountsAlwaysAndWritesWhenVerbose) {
  std::ostringstream output;
  StreamDiagnostics quiet(output, false);
  quiet.report({"here", "what", "J1"});
  EXPECT_EQ(output.str(), "");
  EXPECT_EQ(quiet.count(), 1U);
  StreamDiagnostics verbose(output, true);
  verbose.report({"here", "what", "J1"});
  verbose.report({"there", "else", ""});
  EXPECT_EQ(output.str(), "here: what (Job J1)\nthere: else\n");
}

TEST(StreamDiagnostics, SurviveAStreamThatRaises) {
  std::ostream broken(nullptr);
  EXPECT_THROW(broken.exceptions(std::ios::badbit), std::ios::failure);
  StreamDiagnostics diagnostics(broken, true);
  diagnostics.report({"here", "what", ""});
  EXPECT_EQ(diagnostics.count(), 1U);
}

TEST(AbsentJobView, SaysHowToSeeTheJobsWithoutIt) {
  RecordingDesktop desktop;
  AbsentJobView view(desktop);
  view.open();
  ASSERT_EQ(desktop.shown.size(), 1U);
  EXPECT_NE(desktop.shown[0].text.find("qximportjob view"), std::string::npos);
}

TEST(WholeCharacters, AreHandedOnWhereverTheTextIsCut) {
  const std::string text = "ä€😀z";
  for (std::size_t cut = 0; cut <= text.size(); ++cut) {
    std::string all;
    WholeCharacters buffer([&](std::string_view portion) {
      EXPECT_NE(static_cast<unsigned char>(portion.front()) & 0xC0U, 0x80U)
          << "begins in the middle, " << cut;
      all += portion;
      return true;
    });
    std::ostream(&buffer) << text.substr(0, cut) << std::flush << text.substr(cut) << std::flush;
    EXPECT_EQ(all, text) << cut;
  }
}

TEST(WholeCharacters, KeepNothingBackAtTheEndAndTellWhenNothingIsTaken) {
  std::string all;
  {
    WholeCharacters buffer([&](std::string_view portion) {
      all += portion;
      return true;
    });
    std::ostream(&buffer) << "kein UTF-8: \xC3" << std::flush;
    EXPECT_EQ(all, "kein UTF-8: ");
  }
  EXPECT_EQ(all, "kein UTF-8: \xC3");
  WholeCharacters closed([](std::string_view) { return false; });
  std::ostream stream(&closed);
  EXPECT_FALSE(stream << "x" << std::flush);
  EXPECT_FALSE(std::ostream(&closed) << std::string(5000, 'x')) << "without a flush";
}

} // namespace
} // namespace qx
