#include "store/job_file_text.h"

#include "model/entry_records.h"

#include <gtest/gtest.h>

using namespace qx;

TEST(JobFileText, TheFieldsKindDecidesNotHowTheDatabaseStoresIt) {
  EXPECT_EQ(fileText(FieldKind::Boolean, Value(1)), "Wahr");
  EXPECT_EQ(fileText(FieldKind::Boolean, Value(0)), "Falsch");
  EXPECT_EQ(fileText(FieldKind::Double, Value(10)), "10");
  EXPECT_EQ(fileText(FieldKind::Double, Value(2.5)), "2,5");
  EXPECT_EQ(fileText(FieldKind::Int16, Value("30")), "30");
  EXPECT_EQ(fileText(FieldKind::Boolean, Value::null()), "");
  EXPECT_EQ(fileText(FieldKind::Text, Value("2.5")), "2.5");
}

TEST(JobFileText, AnEmptyNumberLeavesTheInitialValueAndADefectiveOneIsRefused) {
  AuftragsPosFields position;
  position.Menge = 4;
  position.Lieferbereit = true;
  const auto read = [&position](std::string_view name, std::string_view text) {
    return readFileText(text, auftragsPosFields[fieldIndex(auftragsPosFields, name)], position);
  };
  EXPECT_TRUE(read("Menge", ""));
  EXPECT_EQ(position.Menge, 4);
  EXPECT_FALSE(read("Menge", "2.5"));
  EXPECT_EQ(position.Menge, 4);
  EXPECT_TRUE(read("Menge", "1E-05"));
  EXPECT_EQ(position.Menge, 0.00001);
  EXPECT_TRUE(read("Lieferbereit", ""));
  EXPECT_TRUE(position.Lieferbereit);
  for (const char* no : {"Falsch", "False", "0"}) {
    position.Lieferbereit = true;
    EXPECT_TRUE(read("Lieferbereit", no));
    EXPECT_FALSE(position.Lieferbereit) << no;
  }
  EXPECT_TRUE(read("Lieferbereit", "-1"));
  EXPECT_TRUE(position.Lieferbereit);
  EXPECT_FALSE(read("Lieferbereit", "ja"));
  EXPECT_FALSE(read("JobType", "32768"));
  EXPECT_FALSE(read("JobType", "1,5"));
  EXPECT_TRUE(read("Positionsnummer", "-2147483648"));
  EXPECT_EQ(position.Positionsnummer, std::numeric_limits<std::int32_t>::min());
  EXPECT_TRUE(read("Artikellangtext", ""));
}
