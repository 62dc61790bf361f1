// A session identity names machine and process, so that an abandoned lock can be distinguished from one that
// is held.
#include "erp/process_identity.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace qx::erp {
namespace {

class ListedProcesses final : public ProcessTable {
public:
  std::optional<ProcessStart> self() const override { return own; }
  ProcessState find(std::uint64_t number) const override {
    const auto found = running.find(number);
    if (found == running.end()) return {};
    return {true, found->second};
  }

  std::optional<ProcessStart> own = ProcessStart{4194304, 123456789};
  std::map<std::uint64_t, std::optional<std::uint64_t>> running{{4194304, 123456789}};
};

const MachineName machine{std::string(60, 'r'), "0123456789abcdef0123456789abcdef"};

TEST(ProcessIdentityTest, FitsIntoFifteenCharactersWhateverTheHostName) {
  ListedProcesses processes;
  const std::string id = ProcessIdentity(machine, processes).sessionId();
  EXPECT_EQ(id.size(), 15U);
  EXPECT_TRUE(
      std::ranges::all_of(id, [](char c) { return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z'); }));
  // 4194304 and 123456789 in base 36, worked out by division.
  EXPECT_EQ(id.substr(4), "2HWCG21I3V9");
}

TEST(ProcessIdentityTest, MachinesDifferByHostNameAndByMachineId) {
  ListedProcesses processes;
  const auto hash = [&](const std::string& host, const std::string& id) {
    return ProcessIdentity({host, id}, processes).sessionId().substr(0, 4);
  };
  EXPECT_NE(hash("a", "1"), hash("b", "1"));
  EXPECT_NE(hash("a", "1"), hash("a", "2"));
  EXPECT_NE(hash("a1", ""), hash("a", "1"));
  EXPECT_NE(hash(machine.hostName, "1"), hash(machine.hostName + "s", "1"));
}

TEST(ProcessIdentityTest, AProcessLivesOnlyWithItsNumberAndItsStartTime) {
  ListedProcesses processes;
  ProcessIdentity identity(machine, processes);
  const std::string held = identity.sessionId();
  EXPECT_EQ(identity.isAlive(held), true);

  processes.running = {{4194304, 999}};
  EXPECT_EQ(identity.isAlive(held), false) << "the number was given to another process";
  processes.running = {{4194304, std::nullopt}};
  EXPECT_EQ(identity.isAlive(held), true) << "another user's, which may not be asked";
  processes.running.clear();
  EXPECT_EQ(identity.isAlive(held), false);
}

TEST(ProcessIdentityTest, NothingIsSaidAboutOtherMachinesAndOtherForms) {
  ListedProcesses processes;
  ProcessIdentity identity(machine, processes);
  const std::string elsewhere = ProcessIdentity({"anderer", ""}, processes).sessionId();
  EXPECT_EQ(identity.isAlive(elsewhere), std::nullopt);
  const std::string own = identity.sessionId();
  for (const std::string& form : {std::string(), std::string("S0001"), own.substr(0, 14), own + "0",
                                  own.substr(0, 14) + "a", own.substr(0, 14) + "-"})
    EXPECT_EQ(identity.isAlive(form), std::nullopt) << form;

  processes.own.reset();
  EXPECT_EQ(ProcessIdentity(machine, processes).isAlive(own), std::nullopt) << "no table of processes";
}

} // namespace
} // namespace qx::erp
