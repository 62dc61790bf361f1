#include "ui/lookup_bridge.h"

#include "support/test_erp.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>

namespace qx {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// What the lookup window was asked for and what it answers.
struct Recorded {
  std::optional<LookupRequest> request;
  Session* session = nullptr;
  std::vector<std::string> answer;
  bool failing = false;
};

class RecordingAuskunft final : public Auskunft {
public:
  explicit RecordingAuskunft(Recorded& recorded) : recorded_(recorded) {}
  std::vector<std::string> show(Session& session, const LookupRequest& request) override {
    if (recorded_.failing) throw std::runtime_error("the window is gone");
    recorded_.session = &session;
    recorded_.request = request;
    return recorded_.answer;
  }

private:
  Recorded& recorded_;
};

class LookupBridgeTest : public ::testing::Test {
protected:
  LookupBridgeTest() {
    erp.components.setAuskunftFactory([this] { return std::make_unique<RecordingAuskunft>(recorded); });
  }
  /// The request of a lookup; a default one when none was made.
  LookupRequest request(std::string_view lookup, std::string_view context = {},
                        LookupDocument document = LookupDocument::Lieferschein) {
    recorded.request.reset();
    bridge.open(lookup, context, document);
    return recorded.request.value_or(LookupRequest());
  }

  TestErp erp;
  Recorded recorded;
  LookupBridge bridge{erp.environment};
};

TEST_F(LookupBridgeTest, GivesTheKeysThatTheClerkChose) {
  recorded.answer = {"10023", "2"};
  EXPECT_THAT(bridge.open("Adressauskunft", "10023"), ElementsAre("10023", "2"));
  EXPECT_EQ(recorded.session, erp.environment.session.get());
  ASSERT_TRUE(recorded.request);
  EXPECT_EQ(recorded.request->caption, "Adressauskunft zu Kunde 10023");
  EXPECT_EQ(recorded.request->criteria.text(), "Kundennummer='10023' or Kundennummer is null");
  EXPECT_THAT(recorded.request->resultFields, ElementsAre("Kundennummer", "Adressnummer"));
  EXPECT_EQ(recorded.request->acceptCaption, "Übernehmen");

  recorded.answer.clear();
  EXPECT_THAT(bridge.open("Kundenauskunft"), IsEmpty());
  EXPECT_THAT(erp.diagnostics.entries, IsEmpty()) << "leaving without a choice is no failure";
}

TEST_F(LookupBridgeTest, KeepsTheSpellingOfTheCallerInTheRecordSource) {
  EXPECT_EQ(request("kundenAuskunft").recordSource, "AUSK_kundenAuskunft");
  EXPECT_EQ(request("KUNDENAUSKUNFT").caption, "Kundenauskunft");
  EXPECT_EQ(request("Bestellauskunft", "80001").caption, "Bestellauskunft zu Lieferant 80001");
  EXPECT_THAT(request("Vertragsgegenstandsauskunft").resultFields, ElementsAre("VertrGegenstandsNr"));
  EXPECT_EQ(request("Textbausteinauskunft2", "AB").recordSource, "AUSK_Textbausteinauskunft");
}

TEST_F(LookupBridgeTest, RestrictsTheRowsByTheContext) {
  EXPECT_EQ(request("ADRESSAUSKUNFT").criteria.text(), "Kundennummer is null");
  EXPECT_EQ(request("TEXTBAUSTEINAUSKUNFT", "AB").criteria.text(), "Textart='AB'");
  EXPECT_EQ(request("Angebotsauskunft", "80001").criteria.text(), "Lieferantennummer='80001'");
  EXPECT_EQ(request("Artikelauskunft", "80001").criteria.text(), "");
}

TEST_F(LookupBridgeTest, ListsTheKindOfDocumentThatWasAskedFor) {
  const LookupRequest invoices = request("Belegauskunft", "10023", LookupDocument::Rechnung);
  EXPECT_EQ(invoices.recordSource, "AUSK_Rechnungsauskunft");
  EXPECT_EQ(invoices.caption, "Rechnungsauskunft zu Kunde 10023");
  EXPECT_EQ(invoices.criteria.text(), "Kundennummer='10023'");
  EXPECT_EQ(request("Belegauskunft", "1", LookupDocument::Gutschrift).recordSource,
            "AUSK_Gutschriftsauskunft");
}

TEST_F(LookupBridgeTest, TellsAnUnknownNameInABox) {
  EXPECT_THAT(bridge.open("Vertreterauskunft"), IsEmpty());
  EXPECT_EQ(erp.desktop.texts(), "Diese Auskunft wird nicht unterstützt!\n");
  EXPECT_FALSE(recorded.request);
}

TEST_F(LookupBridgeTest, PassesOverAComponentThatFails) {
  recorded.failing = true;
  EXPECT_THAT(bridge.open("Kundenauskunft"), IsEmpty());
  recorded.failing = false;
  recorded.answer = {"10023"};
  EXPECT_THAT(bridge.open("Adressauskunft", "10023"), IsEmpty()) << "one of two fields is no choice";
  erp.components.setAuskunftFactory({});
  EXPECT_THAT(bridge.open("Kundenauskunft"), IsEmpty());
  erp.environment.session.reset();
  EXPECT_THAT(bridge.open("Kundenauskunft"), IsEmpty());
  ASSERT_EQ(erp.diagnostics.entries.size(), 4U) << erp.diagnostics.text();
  EXPECT_EQ(erp.diagnostics.entries.front().where, "AUSK_Kundenauskunft");
  EXPECT_EQ(erp.diagnostics.entries.front().what, "the window is gone");
  EXPECT_THAT(erp.desktop.shown, IsEmpty());
}

} // namespace
} // namespace qx
