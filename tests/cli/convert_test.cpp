// What becomes of files of separated values, and of what they must not be.
#include "program_fixture.h"

#include "adapters/sqlite/sqlite_database.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace qx {
namespace {

using ::testing::HasSubstr;

constexpr const char* examples = CONVERT_EXAMPLES;

std::string contentOfExample(const std::string& name) {
  std::ifstream stream(std::string(examples) + "/" + name, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// A map of orders without positions but the required ones.
constexpr const char* orderMap = R"([file]
kind=Auftrag
delimiter=semicolon
quote=double
encoding=UTF-8
header=yes
decimal=comma
thousands=point
date=dd.mm.yyyy
group=Nr

[columns]
JobID=Nr
Kundennummer=Kunde
Liefertermin=Termin
Positionen.Artikelnummer=Artikel
Positionen.Menge=Menge
)";

class Converting : public ProgramTest {
protected:
  std::string path(const std::string& name) const { return (erp.folder.path() / name).string(); }
  ProgramResult convert(std::string_view csv, std::string_view map = orderMap) const {
    erp.folder.write("Zuordnung ä.ini", map);
    return runPlain({"convert", "--map", path("Zuordnung ä.ini")}, csv);
  }
  /// A file of orders with these lines below its headings.
  ProgramResult order(const std::string& lines, std::string_view map = orderMap) const {
    return convert("Nr;Kunde;Termin;Artikel;Menge\n" + lines, map);
  }
  static std::string with(std::string map, const std::string& before, const std::string& after) {
    return map.replace(map.find(before), before.size(), after);
  }
};

TEST_F(Converting, ExamplesBecomeTheJobsBesideThemWhichStageTakesAndARunWrites) {
  const std::string database = path("Vorführung.db");
  ASSERT_EQ(runPlain({"--db", database, "--date", "24.11.2026", "init", "--demo"}).status, 0);
  for (const auto& [name, ending] : {std::pair{"orders", ".csv"}, std::pair{"customers", ".tsv"}}) {
    const std::string sample = std::string(examples) + "/" + name;
    const std::string target = path(std::string(name) + ".json");
    const ProgramResult result =
        runPlain({"convert", "--map", sample + ".ini", sample + ending, "--output", target, "--json"});
    EXPECT_EQ(result.output,
              name == std::string("orders") ? "{\"rows\":3,\"jobs\":2}\n" : "{\"rows\":2,\"jobs\":2}\n")
        << result.messages;
    EXPECT_EQ(erp.folder.read(std::string(name) + ".json"), contentOfExample(std::string(name) + ".json"));
    EXPECT_EQ(runPlain({"--db", database, "stage", target, "--json"}).json()["staged"], 2);
    EXPECT_EQ(runPlain({"convert", "--map", sample + ".ini", sample + ending, "--output", target}).status, 2)
        << "the file exists";
  }
  runPlain({"--db", database, "--date", "24.11.2026", "process", "--quiet"});
  const auto connection = SqliteDatabase().open(database);
  const auto rows = connection->open(sql(
      "Select p.Artikelnummer || ' ' || p.Menge || ' ' || p.Lieferbereit As Zeile From Auftragspos p Join "
      "Auftragskopf k On k.Auftragsnummer = p.Auftragsnummer Where k.Betreff = 'Fender; zweite Lieferung' "
      "Order By p.Positionsnummer"_sql));
  std::vector<std::string> lines;
  for (; !rows->eof(); rows->moveNext()) lines.push_back(rows->text("Zeile"));
  EXPECT_EQ(lines, (std::vector<std::string>{"FEI-013 2.0 1", "HBU-014 1200.5 0"}));
  const auto customer =
      connection->open(sql("Select Bez1, PLZ, KundeSeit From Kundenstamm Where Kundennummer = '90102'"_sql));
  ASSERT_FALSE(customer->eof());
  EXPECT_EQ(customer->text("Bez1"), "Bootsbau Jürgens");
  EXPECT_EQ(customer->text("PLZ"), "09111");
}

TEST_F(Converting, NumbersKeepEveryDigitAndDatesTheirDay) {
  EXPECT_EQ(
      order("1;2;01.02.2027;A;1.234.567,0100\n\n2;2;;B;-0,5\n3;2;;C;12345678,1234567").output,
      "[\n"
      R"({"type":"Auftrag","JobID":"1","Kundennummer":"2","Liefertermin":"01.02.2027",)"
      R"("Positionen":[{"Artikelnummer":"A","Menge":1234567.0100}]},)"
      "\n"
      R"({"type":"Auftrag","JobID":"2","Kundennummer":"2","Positionen":[{"Artikelnummer":"B","Menge":-0.5}]},)"
      "\n"
      R"({"type":"Auftrag","JobID":"3","Kundennummer":"2","Positionen":[{"Artikelnummer":"C","Menge":12345678.1234567}]})"
      "\n]\n");
  EXPECT_EQ(order("").output, "[\n]\n");
}

TEST_F(Converting, WhatTheMapDoesNotSayIsRefusedWithLineColumnAndValue) {
  struct Case {
    std::string lines;
    std::string message;
  };
  for (const Case& wrong :
       {Case{"1;2;;A;1.5\n",
             "line 2: column Menge: '1.5' is not a number with decimal comma and '.' between"},
        Case{"1;2;;A;1\n\n1;2;;B;1,\n", "line 4: column Menge: '1,' is not a number"},
        Case{"1;2;;A;1234.567\n", "'1234.567' is not a number"},
        Case{"1;2;;A;1,2345678901234567\n", "has more than the 15 digits"},
        Case{"1;2;31.02.2027;A;1\n",
             "line 2: column Termin: '31.02.2027' is not a date of the form dd.mm.yyyy"},
        Case{"1;2;1.2.2027;A;1\n", "'1.2.2027' is not a date"},
        Case{"1;2;;A\n", "line 2: the row has 4 columns, 5 are expected"},
        Case{"1;2;;A;1;\n", "line 2: the row has 6 columns, 5 are expected"},
        Case{"1;2;;A;\n", "line 2: column Menge: the value is empty, but a job needs the property Menge"},
        Case{"1;2;;A;1\n1;3;;B;1\n", "line 3: column Kunde: the value differs from that of line 2"},
        Case{"1;2;;A;1\n2;2;;B;1\n1;2;;C;1\n", "line 4: column Nr: the lines of '1' are not all together"},
        Case{";2;;A;1\n", "line 2: column Nr: the value is empty"},
        Case{std::string(33, 'x') + ";2;;A;1\n", "is longer than a key, which has 32 characters"},
        Case{"1;\"2\n3\";\"\n31.2.2027\";A;1\n", "line 3: column Termin: ' 31.2.2027' is not a date"},
        Case{"1;\"2\n3\";\"4\n", "line 3: column 3: the closing quote of the value is missing"},
        Case{"1;\"a\nb\";;A;1\n1;M\"we;;A;1\n", "line 4: column 2: a quote stands inside of a value"},
        Case{"1;M\xF6we;;A;1\n", "line 2: column Kunde: 'Möwe' is not UTF-8"},
        Case{std::string("1;2;\0;A;1\n", 10), "line 2: column 3: the file holds the character NUL"},
        Case{"1;\"" + std::string(2 << 20, 'x'), "line 2: column 2: the value is longer than 1 MiB"}}) {
    const ProgramResult result = order(wrong.lines);
    EXPECT_EQ(result.status, 2) << wrong.message;
    EXPECT_THAT(result.messages, HasSubstr(wrong.message));
    // What a pipe has let through until then is no file of jobs.
    EXPECT_NE(stage(result.output).status, 0) << result.output;
  }
  EXPECT_TRUE(listed().empty());
}

TEST_F(Converting, HeadingsAndEncodingsMustBeThoseOfTheMap) {
  const auto messages = [&](const std::string& csv, const std::string& map) {
    const ProgramResult result = convert(csv, map);
    EXPECT_EQ(result.status, 2);
    return result.messages;
  };
  EXPECT_THAT(
      messages("Nr;Kunde;Artikel;Menge\n", orderMap),
      HasSubstr("line 1: column Termin: the file has no such column, which line 15 of the map names; it "
                "has 'Nr', 'Kunde', 'Artikel', 'Menge'"));
  EXPECT_THAT(messages("Nr;Kunde;Termin;Artikel;Menge;Nr\n", orderMap),
              HasSubstr("two columns have this heading"));
  EXPECT_THAT(messages("", orderMap), HasSubstr("the file is empty"));
  const std::string western = with(orderMap, "UTF-8", "windows-1252");
  EXPECT_THAT(messages("\xEF\xBB\xBFNr;Kunde", western),
              HasSubstr("begins with the byte order mark of UTF-8"));
  EXPECT_THAT(messages("\xFF\xFEN", western), HasSubstr("the file is in UTF-16"));
  EXPECT_THAT(messages("Nr;Kunde;Termin;Artikel;Menge\n1;Möwe;;A;1\n", western),
              HasSubstr("column Kunde: 'Möwe' is UTF-8, but the map says windows-1252"));
  EXPECT_EQ(convert("\xEF\xBB\xBFNr;Kunde;Termin;Artikel;Menge\r1;2;;A;1\r").status, 0);
}

TEST_F(Converting, AMapMustSayEverythingAndNothingElse) {
  struct Case {
    std::string before;
    std::string after;
    std::string message;
  };
  const std::string added = "Positionen.Menge=Menge\n";
  for (const Case& wrong :
       {Case{"decimal=comma\n", "", "the key 'decimal' is missing in [file]: comma or point\n"},
        Case{"group=Nr\n", "", "the key 'group' is missing in [file]: the column whose value is the same"},
        Case{"header=yes", "header=no", "the key 'columns' is missing in [file]"},
        Case{"semicolon", ";", "line 3: ';' is not semicolon, comma, tab or pipe"},
        Case{"thousands=point", "thousands=comma",
             "line 8: decimals and thousands cannot have the same sign"},
        Case{"dd.mm.yyyy", "dd.mm.yy", "line 9: years have the form yyyy"},
        Case{"group=Nr", "grouping=Nr", "line 10: [file] has no key 'grouping'"},
        Case{"[columns]", "[column]", "there is no section [column]"},
        Case{"JobID=Nr\n", "", "the map lacks the property JobID, which a job of the kind Auftrag needs"},
        Case{"Liefertermin=", "Lieferdatum=",
             "line 15: a job of the kind Auftrag has no property 'Lieferdatum'"},
        Case{"kind=Auftrag", "kind=Kunde", "a job of the kind Kunde has no positions"},
        Case{added, added + "Kundennummer=Kunde\n",
             "line 18: the option 'columns' 'Kundennummer' is already"},
        Case{added, added + "[constants]\nJobID=1\n",
             "line 19: the property JobID has a column and a constant"},
        Case{added, added + "[constants]\nPositionen.Preis=1,5\n",
             "line 19: '1,5' is not a number with decimal point"},
        Case{added, added + "[values Betreff]\na=b\n",
             "line 19: [values Betreff] is for a property that has a column"},
        Case{added, added + "[values Kundennummer]\na=b\n",
             "line 2: column Kunde: '2' is not in the table of values on "
             "line 19 of the map"}}) {
    const ProgramResult result = order("1;2;;A;1\n", with(orderMap, wrong.before, wrong.after));
    EXPECT_EQ(result.status, 2) << wrong.message;
    EXPECT_THAT(result.messages, HasSubstr(wrong.message));
  }
  EXPECT_EQ(runPlain({"convert", "--map", path("keine.ini")}).status, 2);
  EXPECT_EQ(runPlain({"convert", "--map", "-"}).status, 2);
}

TEST_F(Converting, ACustomerWithoutANameIsRefusedByTheMapOrByItsLine) {
  const auto customers = [&](const std::string& names) {
    std::string map = with(with(orderMap, "kind=Auftrag", "kind=Kunde"), "group=Nr", "group=none");
    map.resize(map.find("Liefertermin"));
    return convert("Nr;Kunde;Firma;Suche\n1;1;;a\n2;2;b;\n3;3;;\n", map + names);
  };
  for (const char* none : {"Ort=Firma\n", "[constants]\nBez1=\n"}) {
    const ProgramResult result = customers(none);
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(
        result.messages,
        HasSubstr("ä.ini: the map lacks a name, which a job of the kind Kunde needs: give Bez1, Bez2, "
                  "Bez3 or Suchbegriff a column in [columns]\n"));
  }
  const ProgramResult result = customers("Bez3=Firma\nSuchbegriff=Suche\n");
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.output, HasSubstr(R"("Kundennummer":"2","Bez3":"b")"));
  EXPECT_THAT(result.messages,
              HasSubstr("line 4: column Firma, Suche: nothing stands there, but a job needs"));
  EXPECT_EQ(customers("[constants]\nBez1=Laufkunde\n").status, 0);
}

TEST_F(Converting, AFaultLeavesNoFileBehind) {
  erp.folder.write("Zuordnung.ini", orderMap);
  std::string csv = "Nr;Kunde;Termin;Artikel;Menge\n";
  for (int i = 0; i < 5000; ++i) csv += std::to_string(i) + ";2;;A;1\n";
  erp.folder.write("gut.csv", csv);
  erp.folder.write("schlecht.csv", csv + "x;2;;A;?\n");
  std::filesystem::create_directory(path("Ausgang"));
  const auto into = [&](const char* file, const std::string& target) {
    return runPlain({"convert", "--map", path("Zuordnung.ini"), path(file), "--output", target}).status;
  };
  EXPECT_EQ(into("schlecht.csv", path("Ausgang/a.json")), 2);
  EXPECT_TRUE(std::filesystem::is_empty(path("Ausgang")));
  EXPECT_EQ(into("gut.csv", path("Ausgang/fehlt/a.json")), 4);
  EXPECT_EQ(into("Ausgang", path("a.json")), 2) << "a folder is no file";
  EXPECT_EQ(into("gut.csv", path("Ausgang/a.json")), 0);
}

TEST_F(Converting, AnOutputThatIsFullOrTheFileItselfEndsTheConversion) {
  erp.folder.write("Zuordnung.ini", orderMap);
  std::string csv = "Nr;Kunde;Termin;Artikel;Menge\n";
  for (int i = 0; i < 5000; ++i) csv += std::to_string(i) + ";2;;A;1\n";
  erp.folder.write("gut.csv", csv);
  const auto shell = [&](const std::string& words) {
    erp.folder.write("run.sh", "cd '" + erp.folder.path().string() + "'\n'" + QXIMPORTJOB_PROGRAM +
                                   "' convert --map Zuordnung.ini " + words + "\n");
    return WEXITSTATUS(std::system(("bash '" + path("run.sh") + "'").c_str()));
  };
  EXPECT_EQ(shell("gut.csv >/dev/full 2>err"), 4);
  EXPECT_THAT(erp.folder.read("err"), HasSubstr("standard output could not be written"));
  for (const char* words : {"gut.csv >>gut.csv 2>err", "<gut.csv >>gut.csv 2>err"}) {
    EXPECT_EQ(shell(words), 2);
    EXPECT_THAT(erp.folder.read("err"), HasSubstr("the output would go into the file that is converted"));
    EXPECT_EQ(erp.folder.read("gut.csv"), csv);
  }
  EXPECT_EQ(shell("gut.csv --output gut.csv 2>err"), 2);
  EXPECT_EQ(erp.folder.read("gut.csv"), csv);
}

/// The converters that are no part of the program, called as the page says.
class Recipes : public ProgramTest {
protected:
  std::string path(const std::string& name) const { return (erp.folder.path() / name).string(); }
  /// Runs the words of a shell; what they print goes to "out" and "err".
  int shell(const std::string& words) const {
    const std::string folder = erp.folder.path().string();
    erp.folder.write("run.sh", "cd \"" + folder + "\"\nR=\"" + CONVERT_RECIPES + "\"\nE=\"" + examples +
                                   "\"\n{ " + words + "; } >out 2>err\n");
    return std::system(("bash -o pipefail \"" + folder + "/run.sh\"").c_str());
  }
  std::string output() const { return erp.folder.read("out"); }
  std::string messages() const { return erp.folder.read("err"); }
  int order(const std::string& file, const std::string& recipe = "ubl") const {
    return shell("\"$R\"/xml-order.sh " + recipe + " " + file);
  }
};

TEST_F(Recipes, SamplesOfEachFormBecomeTheJobsBesideThemWhichStageTakes) {
  for (const char* recipe : {"ubl", "opentrans"}) {
    ASSERT_EQ(order("\"$E\"/" + std::string(recipe) + "-order.xml", recipe), 0) << messages();
    EXPECT_EQ(output(), contentOfExample(std::string(recipe) + "-order.json"));
    EXPECT_EQ(stage(output()).json()["staged"], 1);
  }
  ASSERT_EQ(shell("jq -s -c -f \"$R\"/shop-order.jq \"$E\"/shop-orders.json"), 0) << messages();
  EXPECT_EQ(output(), contentOfExample("shop-orders.jobs.json"));
  EXPECT_EQ(stage(output()).json()["staged"], 2);
  EXPECT_EQ(listed(), (std::vector<std::string>{"UBL-7731", "OT-B-4715", "SHOP-50017", "SHOP-50018"}));
}

TEST_F(Recipes, NothingOfAnotherFileOrMachineComesIn) {
  erp.folder.write("secret", "GEHEIM");
  std::string document = contentOfExample("ubl-order.xml");
  document.insert(document.find("<Order"), "<!DOCTYPE Order SYSTEM \"secret\" [<!ENTITY a SYSTEM \"file://" +
                                               (erp.folder.path() / "secret").string() +
                                               "\"><!ENTITY b SYSTEM \"http://127.0.0.1:9/b\">"
                                               "<!ENTITY c \"GEHEIM\">]>\n");
  erp.folder.write("harmless.xml", document);
  EXPECT_EQ(order("harmless.xml"), 0) << messages();
  EXPECT_EQ(output(), contentOfExample("ubl-order.json"));
  for (const char* entity : {"&a;", "&b;", "&c;"}) {
    std::string evil = document;
    evil.insert(evil.find("Bitte"), entity);
    erp.folder.write("evil.xml", evil);
    EXPECT_NE(order("evil.xml"), 0);
    EXPECT_EQ(output(), "");
    EXPECT_EQ(messages().find("GEHEIM"), std::string::npos) << messages();
  }
}

TEST_F(Recipes, AnotherDocumentOrAFaultInItLeavesNothingToStage) {
  const std::string ubl = contentOfExample("ubl-order.xml");
  struct Case {
    std::string before;
    std::string after;
    std::string message;
  };
  for (const Case& wrong :
       {Case{"xsd:Order-2", "xsd:Invoice-2", "an Order of UBL 2.1 is expected, not Order of urn:"},
        Case{"<cbc:ID>70001</cbc:ID>", "", "the number of the customer"},
        Case{">0012.5<", ">12,5<", "Menge: \"12,5\" is not a number"},
        Case{">2026-12-01<", ">1.12.2026<", "Liefertermin: \"1.12.2026\" is not a date"},
        Case{"<cbc:ID>HBU-014</cbc:ID>", "", "line 2: cac:SellersItemIdentification is missing"}}) {
    std::string document = ubl;
    document.replace(document.find(wrong.before), wrong.before.size(), wrong.after);
    erp.folder.write("order.xml", document);
    EXPECT_NE(order("order.xml"), 0) << wrong.message;
    EXPECT_THAT(messages(), HasSubstr(wrong.message));
    EXPECT_EQ(output(), "");
  }
  EXPECT_NE(order("\"$E\"/ubl-order.xml", "opentrans"), 0);
  EXPECT_THAT(messages(), HasSubstr("an ORDER of openTRANS 2.1 is expected, not Order of urn:"));
  erp.folder.write("page.html", "<!DOCTYPE html>\n<html><title>502 Bad Gateway</title></html>\n");
  EXPECT_NE(order("page.html"), 0);
  EXPECT_EQ(output(), "");
  erp.folder.write("order.json",
                   R"({"number":1,"created_at":"2026-01-01","lines":[{"sku":"A","quantity":1}]})");
  EXPECT_NE(shell("jq -s -c -f \"$R\"/shop-order.jq order.json"), 0);
  EXPECT_THAT(messages(), HasSubstr("order 1: customer.number is missing"));
  for (const auto& [answer, message] :
       {std::pair{"<html>502</html>", "parse error"}, std::pair{"", "the input is missing"},
        std::pair{R"({"error":"unauthorized"})", "number is missing"},
        std::pair{R"("maintenance")", "an order is expected, not string"}}) {
    erp.folder.write("order.json", answer);
    EXPECT_NE(shell("jq -s -c -f \"$R\"/shop-order.jq order.json"), 0) << answer;
    EXPECT_THAT(messages(), HasSubstr(message));
    EXPECT_EQ(output(), "");
  }
}

TEST_F(Recipes, AnOrderInXmlThatIsTooLargeIsRefusedAndNeverCutShort) {
  std::string ubl = contentOfExample("ubl-order.xml");
  const std::string line = ubl.substr(ubl.find("<cac:OrderLine>"),
                                      ubl.find("</cac:OrderLine>") + 16 - ubl.find("<cac:OrderLine>"));
  std::string lines;
  while (lines.size() < 1000000) lines += line + "\n";
  erp.folder.write("long.xml", ubl.insert(ubl.find("<cac:OrderLine>"), lines));
  EXPECT_NE(shell("ORDER_XML_MB=1 \"$R\"/xml-order.sh ubl long.xml"), 0);
  EXPECT_THAT(messages(), HasSubstr("long.xml: the file is larger than 1 MB"));
  EXPECT_NE(shell("ORDER_XML_MB=1 \"$R\"/xml-order.sh ubl - <long.xml"), 0);
  EXPECT_EQ(output(), "");
  // Without memory the parser drops what does not fit, tells so and ends with 0 now and then.
  erp.folder.write("xmllint",
                   "#!/bin/sh\necho 'parser error : out of memory error' >&2\ncat \"$E\"/ubl-order.xml\n");
  std::filesystem::permissions(path("xmllint"), std::filesystem::perms::owner_all);
  EXPECT_NE(shell("export E; PATH=\"$PWD:$PATH\" \"$R\"/xml-order.sh ubl long.xml"), 0);
  EXPECT_THAT(messages(),
              HasSubstr("out of memory error\nxml-order.sh: long.xml: not an order that can be converted"));
  EXPECT_EQ(output(), "");
}

} // namespace
} // namespace qx
