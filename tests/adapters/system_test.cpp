// Tests of the system adapters.
#include "adapters/system/console_desktop.h"
#include "adapters/system/process_stat.h"
#include "adapters/system/processes.h"
#include "adapters/system/random_guids.h"
#include "adapters/system/stream_diagnostics.h"
#include "adapters/system/system_sources.h"
#include "support/fake_desktop.h"
#include "support/fake_system.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <set>
#include <sstream>

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

TEST(SystemClock, TellsTheLocalTime) {
  const char* const before = std::getenv("TZ");
  const std::string zone = before != nullptr ? before : "";
  const auto inZone = [](const char* name) {
    setenv("TZ", name, 1);
    tzset();
    return SystemClock().now();
  };
  const DateTime greenwich = inZone("UTC0");
  const DateTime tenHoursEast = inZone("EAST-10");
  if (before != nullptr)
    setenv("TZ", zone.c_str(), 1);
  else
    unsetenv("TZ");
  tzset();
  // The test may straddle the full hour.
  const int difference = (tenHoursEast.hour - greenwich.hour + 24) % 24;
  EXPECT_TRUE(difference == 10 || difference == 11) << difference;
  const auto days = [](const DateTime& moment) { return std::chrono::sys_days(moment.date); };
  EXPECT_GE(days(tenHoursEast), days(greenwich));
  EXPECT_GE(greenwich.date, makeDate(2024, 1, 1));
}

TEST(SystemProcesses, StartTimeIsTheTwentySecondFieldWhateverTheProgramIsCalled) {
  const std::string fields = " 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22000 23 24";
  const auto running = parseProcessStat("77 (a) R (b c) S" + fields);
  ASSERT_TRUE(running.has_value());
  EXPECT_EQ(running->number, 77U);
  EXPECT_EQ(running->startTime, 22000U);
  EXPECT_FALSE(parseProcessStat("77 (a) Z" + fields)) << "ended, not collected";
  EXPECT_FALSE(parseProcessStat("77 (a) S 4 5 6"));
  EXPECT_FALSE(parseProcessStat(""));
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

} // namespace
} // namespace qx
