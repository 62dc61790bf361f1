// Values of every kind as members take and give them.
#include "script.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

namespace qx::automation {
namespace {

struct Sample {
  const char* name;
  Variant value;
  const char* text;
  const char* truth;
  const char* int16;
  const char* number;
  const char* moment;
};

std::shared_ptr<ScriptObject> fieldOf(Variant value) {
  auto field = ScriptObject::make("Field");
  field->with("", [value = std::move(value)](Access, Arguments&) { return value; });
  return field;
}

ObjectPointer recordsetOf(Variant value) { return fieldOf(ObjectPointer(fieldOf(std::move(value)))); }

const std::vector<Sample>& samples() {
  static Variant variable = "7";
  static const std::vector<Sample> all{
      {"Empty", {}, "''", "False", "0%", "0#", "#18991230000000#"},
      {"Null", Variant::null(), "94", "94", "94", "94", "94"},
      {"Missing", Variant::missing(), "449", "449", "449", "449", "449"},
      {"True", true, "'Wahr'", "True", "-1%", "-1#", "#18991229000000#"},
      {"Int16", std::int16_t{-3}, "'-3'", "True", "-3%", "-3#", "#18991227000000#"},
      {"Int32 too large", 40000, "'40000'", "True", "6", "40000#", "#20090706000000#"},
      {"Int64", std::int64_t{5000000000}, "'5000000000'", "True", "6", "5000000000#", "6"},
      {"half to even", 2.5, "'2,5'", "True", "2%", "2.5#", "#19000101120000#"},
      {"half up to even", 3.5, "'3,5'", "True", "4%", "3.5#", "#19000102120000#"},
      {"Currency", Money::ofTenThousandths(-12345), "'-1,2345'", "True", "-1%", "-1.2345#",
       "#18991229053741#"},
      {"Date", DateTime{makeDate(2026, 11, 24), 18, 0, 0}, "'24.11.2026 18:00:00'", "True", "6", "46350.75#",
       "#20261124180000#"},
      {"Day", DateTime{makeDate(1900, 1, 9)}, "'09.01.1900'", "True", "10%", "10#", "#19000109000000#"},
      {"Text", "abc", "'abc'", "13", "13", "13", "13"},
      {"number as text", " 12,5 ", "' 12,5 '", "True", "12%", "12.5#", "13"},
      {"date as text", "1.2.26 7:05", "'1.2.26 7:05'", "13", "13", "13", "#20260201070500#"},
      {"truth as text", "falsch", "'falsch'", "False", "13", "13", "13"},
      {"empty text", "", "''", "13", "13", "13", "13"},
      {"NUL", Variant(std::string("a\0b", 3)), "5", "13", "13", "13", "13"},
      {"infinite", std::numeric_limits<double>::infinity(), "'inf'", "True", "6", "6", "6"},
      {"Nothing", Variant::nothing(), "91", "91", "91", "91", "91"},
      {"object without a value", ObjectPointer(ScriptObject::make("Fenster")), "13", "13", "13", "13", "13"},
      {"field of a record set", recordsetOf(8), "'8'", "True", "8%", "8#", "#19000107000000#"},
      {"null field", recordsetOf(Variant::null()), "94", "94", "94", "94", "94"},
      {"by reference", Variant::reference(variable), "'7'", "True", "7%", "7#", "13"},
  };
  return all;
}

} // namespace

TEST(AutomationValues, AreConvertedAsAutomationLanguagesConvertThem) {
  for (const Sample& sample : samples()) {
    SCOPED_TRACE(sample.name);
    EXPECT_EQ(numberOf([&]() -> Variant { return Variant(textOf(sample.value)); }), sample.text);
    EXPECT_EQ(numberOf([&]() -> Variant { return truthOf(sample.value); }), sample.truth);
    EXPECT_EQ(numberOf([&]() -> Variant { return int16Of(sample.value); }), sample.int16);
    EXPECT_EQ(numberOf([&]() -> Variant { return doubleOf(sample.value); }), sample.number);
    EXPECT_EQ(numberOf([&]() -> Variant { return momentOf(sample.value); }), sample.moment);
  }
}

TEST(AutomationValues, FitTheirTypeToTheLastNumber) {
  EXPECT_EQ(int16Of(32767.5 - 0.01), 32767);
  EXPECT_EQ(int16Of(-32768.5), -32768); // to the even neighbour
  EXPECT_EQ(numberOf([] { return Variant(int16Of(32767.5)); }), "6");
  EXPECT_EQ(int32Of(-2147483648.0), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(numberOf([] { return Variant(int32Of(2147483648.0)); }), "6");
  EXPECT_EQ(numberOf([] { return Variant(int32Of(std::nan(""))); }), "6");
}

TEST(AutomationValues, OfAColumnKeepTheirKindInBothDirections) {
  const DateTime moment{makeDate(1999, 12, 31), 23, 59, 59};
  for (const Value& value : {Value(), Value(std::int64_t{5}), Value(std::int64_t{5000000000}), Value(0.1),
                             Value(Money::ofTenThousandths(1)), Value(true), Value("ä"), Value(moment)})
    EXPECT_EQ(valueOf(variantOf(value)), value) << value.text();
  EXPECT_EQ(shown(variantOf(Value(std::int64_t{2147483647}))), "2147483647&");
  EXPECT_EQ(shown(variantOf(Value(std::int64_t{2147483648}))), "2147483648^");
  EXPECT_TRUE(valueOf(Variant::missing()).isNull());
  EXPECT_TRUE(valueOf(Variant()).isNull());
}

TEST(AutomationValues, HaveDatesThatAreNumbersOfDays) {
  struct Day {
    double serial;
    DateTime moment;
  };
  for (const Day& day :
       {Day{0, {}}, Day{2.25, {makeDate(1900, 1, 1), 6, 0, 0}},
        // Before the first day the time counts away from zero.
        Day{-1.25, {makeDate(1899, 12, 29), 6, 0, 0}}, Day{46350.0, {makeDate(2026, 11, 24)}},
        Day{-657434, {makeDate(100, 1, 1)}}, Day{2958465, {makeDate(9999, 12, 31)}}}) {
    EXPECT_EQ(momentOfSerial(day.serial), day.moment) << day.serial;
    EXPECT_EQ(serialOf(day.moment), day.serial);
  }
  // The nearest second, be it that of the next day.
  EXPECT_EQ(timeStamp(momentOfSerial(46350.9999999)), "20261125000000");
  EXPECT_EQ(numberOf([] { return Variant(momentOfSerial(2958466)); }), "6");
  EXPECT_EQ(numberOf([] { return Variant(momentOfSerial(-657436)); }), "6");
}

TEST(AutomationValues, NameWhatCannotBeConverted) {
  EXPECT_EQ(outcome([] { return Variant(int16Of("zehn\r\nzwei")); }),
            "13: 'zehn zwei' ist kein Wert der Art Zahl.");
  EXPECT_EQ(outcome([] { return Variant(doubleOf(std::string(100, 'x'))); }),
            "13: '" + std::string(60, 'x') + "...' ist kein Wert der Art Zahl.");
  EXPECT_EQ(outcome([] { return Variant(int16Of(32768)); }), "6: '32768' liegt außerhalb des Wertebereichs.");
  EXPECT_EQ(outcome([] { return Variant(objectOf(5)); }), "13: '5' ist kein Wert der Art Objekt.");
  // An object whose default member leads back to itself.
  const auto loop = ScriptObject::make("Kreis");
  loop->with(
      "", [weak = std::weak_ptr(loop)](Access, Arguments&) -> Variant { return ObjectPointer(weak.lock()); });
  EXPECT_EQ(outcome([&] { return Variant(textOf(ObjectPointer(loop))); }),
            "13: ein Objekt der Klasse Kreis ist kein Wert der Art Wert.");
}

TEST(AutomationErrors, HaveOneNumberForEachKindOfException) {
  const auto number = [](const std::function<void()>& raise) {
    try {
      raise();
    } catch (...) {
      return static_cast<int>(failureOf(std::current_exception()).number);
    }
    return 0;
  };
  EXPECT_EQ(number([] { throw AutomationError(ErrorNumber::NoSuchArgument, ""); }), 448);
  EXPECT_EQ(number([] { throw std::out_of_range("no item 7"); }), 9);
  EXPECT_EQ(number([] { throw std::overflow_error("sum"); }), 6);
  EXPECT_EQ(number([] { throw std::invalid_argument("no date"); }), 5);
  EXPECT_EQ(number([] { throw std::bad_alloc(); }), 7);
  EXPECT_EQ(number([] { throw std::logic_error("a fault of ours"); }), 51);
  EXPECT_EQ(number([] { throw std::runtime_error("no tables"); }), 440);
  EXPECT_EQ(number([] { throw StatementError("refused", 19); }), 440);
  EXPECT_EQ(number([] { throw 42; }), 51);
  EXPECT_EQ(outcome([]() -> Variant { throw std::out_of_range("no item 7"); }),
            "9: Diesen Eintrag gibt es nicht (no item 7).");
  EXPECT_EQ(outcome([]() -> Variant { throw std::invalid_argument("no date"); }),
            "5: Das Argument ist ungültig (no date).");
  // The database's own words are not for a clerk.
  EXPECT_EQ(outcome([]() -> Variant { throw StatementError("UNIQUE failed", 19); }),
            "440: Die Datenbank hat das abgelehnt.");
}

} // namespace qx::automation
