#include "model/text.h"

#include "model/code_page.h"

#include <gtest/gtest.h>

#include <string>

using namespace qx;

TEST(Text, CodesDifferByMoreThanTheCaseOfAsciiLetters) {
  EXPECT_TRUE(equalCodes("Netto-14z", "NETTO-14Z"));
  EXPECT_FALSE(equalCodes("ä", "Ä"));
  EXPECT_FALSE(equalCodes("[", "{"));
  EXPECT_FALSE(equalCodes("AB", "ABC"));
}

TEST(Text, LowerCaseTakesAccentedLettersAndLeavesSignsAlone) {
  EXPECT_EQ(lowerCase("ÀÉÖÞ × ß ÷ ÿ ZAHL"), "àéöþ × ß ÷ ÿ zahl");
  EXPECT_EQ(asciiLower("ÄB"), "Äb");
}

TEST(Text, CountsCharactersNotBytes) {
  EXPECT_EQ(firstCharacters("Größe", 4), "Größ");
  EXPECT_EQ(firstCharacters("ab", 15), "ab");
  EXPECT_EQ(firstCharacters("😀😀😀", 2), "😀😀");
  EXPECT_EQ(characterCount("Größe €"), 7U);
}

TEST(Text, WellFormedCharactersAreNeitherOverlongNorCutNorOutOfRange) {
  EXPECT_EQ(utf8Length("A"), 1U);
  EXPECT_EQ(utf8Length("€uro"), 3U);
  EXPECT_EQ(utf8Length("\xF4\x8F\xBF\xBF"), 4U);
  for (const char* malformed :
       {"", "\x80", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82"})
    EXPECT_EQ(utf8Length(malformed), 0U) << malformed;
}

TEST(Text, EveryMalformedByteIsAQuestionMarkOfTheCodePage) {
  std::string bytes;
  EXPECT_EQ(appendCodePage(bytes, "a\xE0\x80\x80ä€Ω\x9F"), 5U);
  EXPECT_EQ(bytes, "a???\xE4\x80??");
}

TEST(Text, HashesAreTheSameInEveryBuild) {
  EXPECT_EQ(textHash(""), 0xCBF29CE484222325U);
  EXPECT_EQ(textHash("a"), 0xAF63DC4C8601EC8CU);
}
