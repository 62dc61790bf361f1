#include "store/job_file_record.h"

#include "store/job_lines.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace qx;

namespace {

/// Records of code 1 have two fields, of code 2 four.
std::size_t fieldsOf(std::int64_t code) { return code == 1 ? 2 : code == 2 ? 4 : 0; }

/// The items of a file after its banner, one per line: first line, kind, code and text or reason. Line breaks
/// of a text show as "|" for CR LF and "/" for LF.
std::string items(const std::string& content) {
  std::istringstream stream(content);
  JobFileLines lines(stream, "test");
  lines.next();
  JobFileRecords records(lines, fieldsOf);
  std::string result;
  while (const auto item = records.next()) {
    constexpr std::string_view kinds[] = {"record", "skipped", "refused"};
    result += std::to_string(item->line) + " " + std::string(kinds[static_cast<std::size_t>(item->kind)]) +
              " " + std::to_string(item->code) + " " + std::string(item->text) + std::string(item->reason) +
              "\n";
  }
  for (auto at = result.find("\r\n"); at != std::string::npos; at = result.find("\r\n"))
    result.replace(at, 2, "|");
  return result;
}

const std::string tooMany =
    "2 refused 1 the record has more fields than its kind: a value holds the separator\n";
const std::string tooFew = "the record has too few fields\n";

} // namespace

TEST(JobFileRecord, GoesOnUntilItEndsLikeAFieldAndHasItsFields) {
  EXPECT_EQ(items("B\r\n"
                  "\"2\";\"eins\r\n"
                  "zwei\";\r\n"
                  "\r\n"
                  "\"drei\";\"x\r\n"
                  "y\";\r\n"
                  "\"1\";\"z\";\r\n"),
            "2 record 2 \"2\";\"eins|zwei\";||\"drei\";\"x|y\";\n"
            "7 record 1 \"1\";\"z\";\n");
}

TEST(JobFileRecord, IsBrokenOffByTheNextOneAndByTheEndOfTheFile) {
  EXPECT_EQ(items("B\r\n\"2\";\"a\";\r\n\"1\";\"b\";\r\n\"2\";\"c"),
            "2 refused 2 " + tooFew +
                "3 record 1 \"1\";\"b\";\n4 refused 2 the file ends before the record does\n");
  // The last line end may be missing, or cut in two.
  EXPECT_EQ(items("B\r\n\"1\";\"b\";"), "2 record 1 \"1\";\"b\";\n");
  EXPECT_EQ(items("B\r\n\"1\";\"b\";\r"), "2 record 1 \"1\";\"b\";\n");
  EXPECT_EQ(items("B"), "");
  EXPECT_EQ(items(""), "");
}

TEST(JobFileRecord, OfNoKindIsSkippedAsAWholeAndSoIsEveryLineOutside) {
  EXPECT_EQ(
      items("B\r\n\"44\";\"a\r\nb\";\r\n\"1\";\"c\";\r\nverloren\r\n\r\n\"x\";\"y\";\r\n\"-7\";\"d\";\r\n"),
      "2 skipped 44 \n4 record 1 \"1\";\"c\";\n5 skipped 0 \n6 skipped 0 \n7 skipped 0 \n8 skipped -7 \n");
  // A number alone begins no record: it may stand in a value.
  EXPECT_EQ(items("B\r\n\"2\";\"a\r\n\"1\";\r\n\"c\";\"d\";\r\n"),
            "2 record 2 \"2\";\"a|\"1\";|\"c\";\"d\";\n");
}

TEST(JobFileRecord, TheBannersLineEndDecides) {
  EXPECT_EQ(items("B\r\n\"2\";\"a\nb\rc\";\"d\";\"e\";\r\n"), "2 record 2 \"2\";\"a\nb\rc\";\"d\";\"e\";\n");
  EXPECT_EQ(items("B\n\"2\";\"a\nb\";\"d\";\"e\";\n\"1\";\"f\";\n"),
            "2 record 2 \"2\";\"a|b\";\"d\";\"e\";\n4 record 1 \"1\";\"f\";\n");
}

TEST(JobFileRecord, OfALineFeedFileMayHaveCarriageReturnsAndAnyMayHaveBlanksBehindIt) {
  EXPECT_EQ(items("B\n\"2\";\"a\r\nb\";\"d\";\"e\";\r\n\"1\";\"f\";\r\n"),
            "2 record 2 \"2\";\"a|b\";\"d\";\"e\";\n4 record 1 \"1\";\"f\";\n");
  EXPECT_EQ(items("B\r\n\"1\";\"a\"; \t\r\n\"2\";\"b\"; \r\n\"c\";\"d\"; \r\n"),
            "2 record 1 \"1\";\"a\";\n3 record 2 \"2\";\"b\"; |\"c\";\"d\";\n");
}

TEST(JobFileRecord, OfACarriageReturnFileIsRead) {
  EXPECT_EQ(items("B\r\"2\";\"a\nb\";\"d\";\"e\";\r\"1\";\"f\";\r"),
            "2 record 2 \"2\";\"a\nb\";\"d\";\"e\";\n3 record 1 \"1\";\"f\";\n");
  // Well after the banner a CR belongs to a value.
  const std::string banner(longestBannerLine, 'B');
  EXPECT_EQ(items(banner + "\r\"1\";\"f\";\r"), "2 record 1 \"1\";\"f\";\n");
  EXPECT_EQ(items(banner + "B\r\"1\";\"f\";\r\n\"1\";\"g\";\r\n"), "2 record 1 \"1\";\"g\";\n");
}

TEST(JobFileRecord, WithMoreFieldsThanItsKindIsRefusedAlone) {
  EXPECT_EQ(items("B\r\n\"1\";\"a;b\";\r\n\"1\";\"c\";\r\n\"1\";\"a;b\r\n;c\";\r\n"),
            tooMany + "3 record 1 \"1\";\"c\";\n" + "4" + tooMany.substr(1));
}

TEST(JobFileRecord, HasAtMostSixtySixFields) {
  const auto withFields = [](int number) {
    std::string line = "\"1\";";
    for (int i = 1; i < number; ++i) line += "\"\";";
    return line;
  };
  EXPECT_EQ(items("B\r\n" + withFields(66) + "\r\n"), tooMany);
  EXPECT_EQ(items("B\r\n" + withFields(67) + "\r\nx\r\n\"1\";\"a\";\r\n"),
            "2 refused 1 the record has more than 66 fields\n3 skipped 0 \n4 record 1 \"1\";\"a\";\n");
}

TEST(JobFileRecord, HasAtMostSixteenMebibytes) {
  const std::string value(longestRecord - 8, 'x');
  const std::string next = "\r\n\"1\";\"z\";\r\n";
  const std::string tooLong = "2 refused 1 the record is longer than 16 MiB\n";
  // Eight more characters are the two fields' quotes, semicolons and the number.
  EXPECT_EQ(items("B\r\n\"1\";\"" + value.substr(1) + "\";" + next).substr(0, 8), "2 record");
  EXPECT_EQ(items("B\r\n\"1\";\"" + value + "xx\";" + next), tooLong + "3 record 1 \"1\";\"z\";\n");
  EXPECT_EQ(items("B\r\n\"1\";\"" + value + "\r\n" + value + "\";" + next),
            tooLong + "4 record 1 \"1\";\"z\";\n");
  EXPECT_EQ(items("B\r\n\"1\";\"" + value + value + value + "\r\nRest\";" + next),
            tooLong + "4 record 1 \"1\";\"z\";\n");
}

TEST(JobFileRecord, ScrambledLinesAreUnscrambledOneByOne) {
  const Scrambler scrambler(defaultCodeTables());
  // A line feed alone belongs to the value and counts as a place.
  std::istringstream stream("B\r\n" + scrambler.Encrypt("\"1\";\"a\nb") + "\r\n" + scrambler.Encrypt("c\";") +
                            "\r\n");
  JobFileLines lines(stream, "test");
  lines.next();
  lines.unscramble(&scrambler);
  JobFileRecords records(lines, fieldsOf);
  const auto item = records.next();
  ASSERT_TRUE(item);
  EXPECT_EQ(item->text, "\"1\";\"a\nb\r\nc\";");
}

TEST(JobFileField, LosesItsQuotesAndIsReadFromTheCodePage) {
  std::vector<std::string_view> fields;
  splitFields("\"a\";\"\";\"b\"c\";x;", fields);
  ASSERT_EQ(fields.size(), 4U);
  std::string text;
  readField(fields[2], text);
  EXPECT_EQ(text, "bc");
  readField("\"\xE4\x80\"", text);
  EXPECT_EQ(text, "ä€");
}
