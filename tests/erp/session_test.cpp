// Settings, user, date and numbers of the standalone session.
#include "standalone_fixture.h"

namespace qx::erp {
namespace {

using StandaloneSessionTest = StandaloneErpTest;

TEST_F(StandaloneSessionTest, HasADatabaseOnlyWhileConnected) {
  auto erp = erpOf({"meier", {}, "", ""});
  const auto session = erp.createSession();
  EXPECT_TRUE(session->NotConnected());
  EXPECT_EQ(session->connection(), nullptr);
  EXPECT_THROW(session->GetSetting("A", "B", std::nullopt), std::runtime_error);
  session->Connect("egal", "egal");
  EXPECT_FALSE(session->NotConnected());
  EXPECT_EQ(session->connection(), file.environment.connection);
  session->Disconnect();
  EXPECT_TRUE(session->NotConnected());

  StandaloneErp without(nullptr, file.clock, file.desktop, file.diagnostics, identity, {});
  const auto none = without.createSession();
  none->Connect("", "");
  EXPECT_TRUE(none->NotConnected());
  EXPECT_NE(none->ErrorCode(), 0);
}

TEST_F(StandaloneSessionTest, ASettingIsWhatWasWrittenLastAndTheDefaultOnlyWhenItNeverWas) {
  const auto s = session();
  EXPECT_EQ(s->GetSetting("ImportJob2", "KundeDelete", "0"), "0");
  EXPECT_EQ(s->GetSetting("ImportJob2", "KundeDelete", std::nullopt), "");
  s->SaveSetting("ImportJob2", "KundeDelete", "1");
  s->SaveSetting("importjob2", "kundedelete", "O'Neill; ß");
  EXPECT_EQ(s->GetSetting("ImportJob2", "KundeDelete", "0"), "O'Neill; ß");
  s->SaveSetting("ImportJob2", "KundeDelete", "");
  EXPECT_EQ(s->GetSetting("ImportJob2", "KundeDelete", "0"), "") << "written empty is written";
  EXPECT_EQ(s->GetSetting("Process", "KundeDelete", "x"), "x");
  EXPECT_EQ(s->GetSetting("Allgemein", "Landeswährung", "DM"), "EUR");
}

TEST_F(StandaloneSessionTest, PersonnelNumberAndBookingCircleComeFromTheUsersRow) {
  file.execute("Insert Into Benutzer (UserName, PersonalNr, Buchungskreis) Values ('meier', '12', 2)"_sql);
  file.execute("Insert Into Benutzer (UserName, PersonalNr) Values ('kunz', '13')"_sql);
  const auto meier = sessionOf({"MEIER", {}, "", ""});
  EXPECT_EQ(meier->PersonalNr(), "12");
  EXPECT_EQ(meier->GetBuchungskreis(), 2);
  EXPECT_EQ(sessionOf({"kunz", {}, "", ""})->GetBuchungskreis(), 1);
  const auto unknown = sessionOf({"fremd", {}, "", ""});
  EXPECT_EQ(unknown->PersonalNr(), "");
  EXPECT_EQ(unknown->GetBuchungskreis(), 1);
  EXPECT_EQ(unknown->UserName(), "fremd");
}

TEST_F(StandaloneSessionTest, WorksUnderTheClocksDayUnlessADayIsGiven) {
  const auto s = session();
  EXPECT_EQ(s->GetSessionDate(), makeDate(2026, 11, 24));
  file.clock.moment.date = makeDate(2026, 11, 25);
  EXPECT_EQ(s->GetSessionDate(), makeDate(2026, 11, 25)) << "after midnight";
  EXPECT_EQ(sessionOf({"", makeDate(2026, 1, 2), "", ""})->GetSessionDate(), makeDate(2026, 1, 2));
}

class NumberRange : public StandaloneErpTest {
protected:
  void range(std::int16_t circle, bool active, Value current, Value lower, Value upper) {
    const auto rows = file.open("Select * From Nummernkreise Where NSchl = 'X'"_sql);
    rows->addNew();
    rows->set("NSchl", "X");
    rows->set("Buchungskreis", circle);
    rows->set("Aktiviert", active);
    rows->set("aktuellerWert", std::move(current));
    rows->set("UntererWert", std::move(lower));
    rows->set("ObererWert", std::move(upper));
    rows->update();
  }
  std::optional<std::int32_t> draw(std::int16_t circle) { return session()->GetBelegnummer("X", circle); }
  Value current(std::int16_t circle) {
    return file.single("Select aktuellerWert From Nummernkreise Where NSchl = 'X' And Buchungskreis = "_sql,
                       number(circle));
  }
};

TEST_F(NumberRange, DrawsTheNumberAfterTheLastOneAndAdvances) {
  range(1, true, 41, {}, {});
  range(2, true, 900, {}, {});
  EXPECT_EQ(draw(1), 42);
  EXPECT_EQ(draw(1), 43);
  EXPECT_EQ(current(1), Value(43));
  EXPECT_EQ(current(2), Value(900)) << "the other booking circle";
  EXPECT_EQ(session()->GetBelegnummer("AB", 1), 1) << "a fresh installation begins with 1, never with 0";
}

TEST_F(NumberRange, KeepsWithinItsBounds) {
  range(1, true, {}, 1000, 1001);
  EXPECT_EQ(draw(1), 1000);
  EXPECT_EQ(draw(1), 1001);
  EXPECT_EQ(draw(1), std::nullopt);
  EXPECT_EQ(current(1), Value(1001)) << "a number that was not drawn does not advance the range";
  range(2, true, std::int64_t{2147483646}, {}, {});
  EXPECT_EQ(draw(2), 2147483647);
  EXPECT_EQ(draw(2), std::nullopt);
}

TEST_F(NumberRange, ThatHasNoWholeNumbersOrDoesNotMoveIsNamed) {
  const auto failure = [&](std::int16_t circle) {
    try {
      draw(circle);
      return std::string("drawn");
    } catch (const std::runtime_error& error) {
      return std::string(error.what());
    }
  };
  range(1, true, "abc", {}, {});
  range(2, true, "", {}, {});
  range(3, true, 1.5, {}, {});
  range(4, true, 7, "von", {});
  range(5, true, 7, "", "9,5");
  EXPECT_EQ(failure(1),
            "Der Nummernkreis 'X' im Buchungskreis '1' hat als aktuellerWert keine ganze Zahl: 'abc'.");
  EXPECT_EQ(failure(2),
            "Der Nummernkreis 'X' im Buchungskreis '2' hat als aktuellerWert keine ganze Zahl: ''.");
  EXPECT_EQ(failure(3),
            "Der Nummernkreis 'X' im Buchungskreis '3' hat als aktuellerWert keine ganze Zahl: '1.5'.");
  EXPECT_EQ(failure(4),
            "Der Nummernkreis 'X' im Buchungskreis '4' hat als UntererWert keine ganze Zahl: 'von'.");
  EXPECT_EQ(failure(5),
            "Der Nummernkreis 'X' im Buchungskreis '5' hat als ObererWert keine ganze Zahl: '9,5'.");
  range(6, true, std::int64_t{9223372036854775807}, {}, {});
  EXPECT_EQ(draw(6), std::nullopt) << "beyond every number is used up";
  range(7, true, 7, {}, {});
  file.execute("CREATE TRIGGER ignore BEFORE UPDATE ON Nummernkreise "
               "BEGIN SELECT RAISE(IGNORE); END"_sql);
  EXPECT_EQ(failure(7), "Der Nummernkreis 'X' im Buchungskreis '7' nimmt keine neue Nummer an.");
}

TEST_F(NumberRange, GivesNothingWhenMissingOrInactive) {
  range(1, false, 5, {}, {});
  EXPECT_EQ(draw(1), std::nullopt);
  EXPECT_EQ(current(1), Value(5));
  EXPECT_EQ(draw(7), std::nullopt);
}

TEST_F(NumberRange, ANumberGivenBackIsDrawnAgain) {
  range(1, true, 5, {}, {});
  EXPECT_EQ(draw(1), 6);
  file.execute("Update Nummernkreise Set aktuellerWert = aktuellerWert - 1 Where NSchl = 'X'"_sql);
  EXPECT_EQ(draw(1), 6);
}

} // namespace
} // namespace qx::erp
