#include "model/code_page.h"
#include "rules/scrambler.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <stdexcept>

using namespace qx;

namespace {

/// The 94 characters in code order.
std::string plainAlphabet() {
  std::string alphabet;
  for (char c = ' '; c <= '~'; ++c)
    if (c != '"') alphabet += c;
  return alphabet;
}

/// A file's content: table number n is the alphabet turned by n places.
std::string tableFile(std::string_view banner = "Ein Banner mit 23 Zei\xE4n",
                      std::string_view lineEnd = "\r\n") {
  std::string content;
  for (std::size_t turn = 1; turn <= 4; ++turn) {
    const std::string alphabet = plainAlphabet();
    content.append(alphabet.substr(turn)).append(alphabet.substr(0, turn)).append(lineEnd);
  }
  return content.append(banner);
}

} // namespace

TEST(Scrambler, TheOwnTablesScrambleThisTextSo) {
  // Place in the text, the character, its place among the 94, the table of the text's place and what stands
  // there: 1 A 33rd of T1 {, 2 u 85th of T2 %, 3 f 70th of T3 H, 4 t 84th of T3 G, 5 r 82nd of T3 p, 6 a 65th
  // of T3 ., 7 g 71st of T0 ;, 8 ; 27th of T1 X, 9 4 20th of T2 |, 10 7 23rd of T3 K, 11 and 12 1 17th of T3
  // 0, 13 blank 1st of T3 V, 14 ~ 94th of T0 \.
  const Scrambler scrambler(defaultCodeTables());
  EXPECT_EQ(scrambler.Encrypt("Auftrag;4711 ~"), "{%HGp.;X|K00V\\");
  EXPECT_EQ(scrambler.Decrypt("{%HGp.;X|K00V\\"), "Auftrag;4711 ~");
}

TEST(Scrambler, TheOwnTablesDifferAtEveryPlaceAndMoveEveryCharacter) {
  const CodeTables own = defaultCodeTables();
  const std::string alphabet = plainAlphabet();
  for (std::size_t i = 0; i < scrambledCharacters; ++i)
    for (std::size_t a = 0; a < 4; ++a) {
      EXPECT_NE(own.tables[a][i], alphabet[i]);
      for (std::size_t b = a + 1; b < 4; ++b) EXPECT_NE(own.tables[a][i], own.tables[b][i]);
    }
}

TEST(Scrambler, FourOfSevenPlacesShareATable) {
  // Turned tables: "a" becomes b, c, d or e with table 0, 1, 2 or 3.
  const Scrambler scrambler(parseCodeTables(tableFile()));
  EXPECT_EQ(scrambler.Encrypt("aaaaaaaaaaaaaaa"), "cdeeeebcdeeeebc");
}

TEST(Scrambler, CharactersCountNotBytesAndForeignOnesPass) {
  const Scrambler scrambler(parseCodeTables(tableFile()));
  EXPECT_EQ(scrambler.Encrypt("äa€a😀a\"a"), "äd€e😀e\"c");
  for (const char* untouched : {"", "\"\"\"", "äöüß€", "\r\n\t", "\x7F"}) {
    EXPECT_EQ(scrambler.Encrypt(untouched), untouched);
    EXPECT_EQ(scrambler.Decrypt(untouched), untouched);
  }
}

TEST(Scrambler, DecryptUndoesEncryptForEveryCharacterAtEveryPlace) {
  const Scrambler scrambler(defaultCodeTables());
  for (std::size_t shift = 0; shift < 7; ++shift) {
    const std::string text = std::string(shift, 'x') + plainAlphabet() + "\"Öl\r\n";
    EXPECT_EQ(scrambler.Decrypt(scrambler.Encrypt(text)), text);
  }
}

TEST(Scrambler, TheCheckSumAddsTheCodesOfTheCodePage) {
  EXPECT_EQ(Scrambler::CheckSum(""), 0);
  EXPECT_EQ(Scrambler::CheckSum("AB"), 131);
  EXPECT_EQ(Scrambler::CheckSum("ä"), 228);
  EXPECT_EQ(Scrambler::CheckSum("€"), 128);
  // One too many: 8421504 times 255, 127 and 1 make 2147483648.
  std::string text;
  for (int i = 0; i < 8421504; ++i) text += "ÿ";
  EXPECT_THROW(Scrambler::CheckSum(text + "\x7F\x01"), std::overflow_error);
}

TEST(CodePage, EveryByteSurvivesTheWayToUtf8AndBack) {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  const std::string text = textFromCodePage(bytes);
  std::string back;
  EXPECT_EQ(appendCodePage(back, text), 0U);
  EXPECT_EQ(back, bytes);
  EXPECT_EQ(textFromCodePage("\x80\xE4\x81"), "€ä\xC2\x81");
}

TEST(CodePage, WhatItLacksBecomesAQuestionMarkEach) {
  std::string bytes;
  // U+0080 is no character of the code page: its byte stands for the euro sign.
  EXPECT_EQ(appendCodePage(bytes, "aЖ😀\xC2\x80\xFF\xC3z"), 5U);
  EXPECT_EQ(bytes, "a?????z");
}

TEST(CodeTables, AreReadAsTheyStandWhateverTheLineEnds) {
  for (const char* lineEnd : {"\n", "\r\n"}) {
    const CodeTables read = parseCodeTables(tableFile("Ein Banner mit 23 Zei\xE4n", lineEnd));
    // The table turned by one ends in the blank, which counts.
    EXPECT_EQ(read.tables[0].back(), ' ');
    EXPECT_EQ(read.banner, "Ein Banner mit 23 Zei\xE4n");
  }
  EXPECT_NO_THROW(parseCodeTables(tableFile() + "\r\n"));
}

TEST(CodeTables, WhatIsNoPermutationOrNoBannerIsRefusedByItsLine) {
  const auto problem = [](std::string content) -> std::string {
    try {
      parseCodeTables(content);
    } catch (const std::runtime_error& refused) {
      return std::string(refused.what()).substr(0, 6);
    }
    return "none";
  };
  std::string twice = tableFile();
  twice[0] = twice[1];
  std::string quote = tableFile();
  quote[96] = '"';
  const Scrambler turned(parseCodeTables(tableFile()));
  EXPECT_EQ(problem(""), "line 1");
  EXPECT_EQ(problem(twice), "line 1");
  EXPECT_EQ(problem(quote), "line 2");
  EXPECT_EQ(problem(tableFile("kurz")), "line 5");
  EXPECT_EQ(problem(tableFile("Ein Banner \"mit\" 23 Zei.")), "line 5");
  EXPECT_EQ(problem(tableFile("Quorvex ImportJob V 2.0")), "line 5");
  EXPECT_EQ(problem(tableFile("Quorvex ImportJob V 1.0")), "line 5");
  EXPECT_EQ(problem(tableFile(turned.banner1().substr(0, 23))), "line 5");
  EXPECT_EQ(problem(tableFile() + "\n\n"), "line 6");
}

TEST(CodeTables, AFileOfTheFolderGoesBeforeTheOwnTables) {
  const TemporaryFolder folder;
  EXPECT_EQ(readCodeTables(folder.path()).tables, defaultCodeTables().tables);
  folder.write("Codetabellen.txt", tableFile());
  EXPECT_EQ(readCodeTables(folder.path()).banner, "Ein Banner mit 23 Zei\xE4n");
  folder.write("Codetabellen.txt", "unbrauchbar");
  try {
    readCodeTables(folder.path());
    FAIL() << "a defective file was taken";
  } catch (const std::runtime_error& refused) {
    EXPECT_NE(std::string(refused.what()).find("Codetabellen.txt, line 1"), std::string::npos);
  }
}

TEST(CodeTables, WithoutABannerOfItsOwnTheScrambledPlainOneServes) {
  const Scrambler scrambler(defaultCodeTables());
  EXPECT_EQ(scrambler.banner(), R"(_J\p)Ya[A{Y\,xL\$VDe3+3)");
  EXPECT_EQ(scrambler.banner1(), R"(_J\p)Ya[A{Y\,xL\$VDen+3E0)");
}
