// The events of the engine object and those who listen.
#include "automation_fixture.h"

#include "automation/classes/engine_object.h"

namespace qx::automation {
namespace {

class Listener final : public EventSink {
public:
  using Reaction = std::function<void(DispatchId)>;
  explicit Listener(std::vector<std::string>& heard, std::string name, Reaction reaction = {})
      : heard_(heard), name_(std::move(name)), reaction_(std::move(reaction)) {}

  void raise(DispatchId event, const std::vector<Variant>& arguments) override {
    heard_.push_back(name_ + std::to_string(event) +
                     (arguments.empty() ? "" : " " + shown(arguments.front())));
    if (reaction_) reaction_(event);
  }

private:
  std::vector<std::string>& heard_;
  std::string name_;
  Reaction reaction_;
};

class AutomationEvents : public AutomationTest {
protected:
  AutomationEvents() { stageMany(2); }

  std::uint32_t listen(std::string name, Listener::Reaction reaction = {}) {
    return provider().advise(std::make_shared<Listener>(heard, std::move(name), std::move(reaction)));
  }
  EventProvider& provider() { return dynamic_cast<EventProvider&>(*engineObject); }
  std::string process() { return called(engineObject, "ProcessJobs", {true, 1}); }

  ObjectPointer engineObject = create("ImportJobObject2");
  std::vector<std::string> heard;
};

} // namespace

TEST_F(AutomationEvents, ReachTheListenersInTheOrderInWhichTheyCame) {
  listen("a");
  listen("b");
  EXPECT_EQ(process(), "True");
  EXPECT_EQ(heard, (std::vector<std::string>{
                       "a3 'Kunden werden verarbeitet...'", "b3 'Kunden werden verarbeitet...'",
                       "a3 'Kunden werden verarbeitet... (Kundennummer: 70001)'",
                       "b3 'Kunden werden verarbeitet... (Kundennummer: 70001)'", "a2 50%", "b2 50%",
                       "a3 'Kunden werden verarbeitet... (Kundennummer: 70002)'",
                       "b3 'Kunden werden verarbeitet... (Kundennummer: 70002)'", "a2 100%", "b2 100%"}));
  heard.clear();
  EXPECT_EQ(called(engineObject, "Unload"), "Empty");
  EXPECT_EQ(heard, (std::vector<std::string>{"a1", "b1"}));
}

TEST_F(AutomationEvents, LetListenersComeAndGoWhileTheyAreRaised) {
  std::uint32_t second = 0;
  std::uint32_t first = 0;
  bool over = false;
  first = listen("a", [&](DispatchId event) {
    if (event != 2 || over) return;
    over = true;
    EXPECT_TRUE(provider().unadvise(second));
    EXPECT_TRUE(provider().unadvise(first));
    listen("c");
  });
  second = listen("b");
  EXPECT_EQ(process(), "True");
  EXPECT_EQ(heard, (std::vector<std::string>{
                       "a3 'Kunden werden verarbeitet...'", "b3 'Kunden werden verarbeitet...'",
                       "a3 'Kunden werden verarbeitet... (Kundennummer: 70001)'",
                       "b3 'Kunden werden verarbeitet... (Kundennummer: 70001)'", "a2 50%",
                       "c3 'Kunden werden verarbeitet... (Kundennummer: 70002)'", "c2 100%"}));
  EXPECT_FALSE(provider().unadvise(second));
  EXPECT_FALSE(provider().unadvise(0));
}

TEST_F(AutomationEvents, ReachTheOthersWhenOneRaises) {
  listen("a", [](DispatchId) { throw std::runtime_error("der Zuhörer streikt"); });
  listen("b", [](DispatchId) { throw 7; });
  listen("c");
  EXPECT_EQ(process(), "True");
  EXPECT_EQ(done(), 2);
  EXPECT_EQ(std::count(heard.begin(), heard.end(), "c2 100%"), 1);
  ASSERT_EQ(erp.diagnostics.entries.size(), 10U);
  EXPECT_EQ(erp.diagnostics.entries.front().where, "event sink");
}

TEST_F(AutomationEvents, MayEndTheLastHoldOnTheirObject) {
  std::string again;
  listen("a", [&](DispatchId event) {
    if (event != 2 || !engineObject) return;
    // Another run would nest.
    again = process();
    engineObject.reset();
  });
  auto* const raw = engineObject.get();
  Arguments arguments{{true, 1}, {}};
  const Variant result = raw->invoke(raw->memberId("ProcessJobs").value(), Access::Method, arguments);
  EXPECT_EQ(shown(result), "True");
  EXPECT_EQ(again, "False");
  EXPECT_EQ(done(), 2);
  EXPECT_EQ(component->liveObjects(), 0U);
}

TEST_F(AutomationEvents, BelongToTheObjectThatRaisesThem) {
  const ObjectPointer other = create("ImportJobObject2");
  dynamic_cast<EventProvider&>(*other).advise(std::make_shared<Listener>(heard, "other"));
  listen("own");
  EXPECT_EQ(called(other, "Unload"), "Empty");
  EXPECT_EQ(called(engineObject, "Unload"), "Empty");
  EXPECT_EQ(heard, (std::vector<std::string>{"other1", "own1"}));
  EXPECT_EQ(provider().sinks().size(), 1U);
}

} // namespace qx::automation
