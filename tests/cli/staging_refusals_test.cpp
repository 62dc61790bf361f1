// What `stage` refuses: every error names line, object and property, and nothing is staged.
#include "program_fixture.h"

namespace qx {
namespace {

struct Refusal {
  std::string_view rule;
  std::string_view jobs;
  int line;
  std::string_view field; ///< empty for none
  std::string_view message;
};

const Refusal refusals[] = {
    {"unknown property",
     "[\n{\"type\":\"Kunde\",\"Kundennummer\":\"1\",\"Bez1\":\"N\",\n\"Kundenummer\":\"1\"}]", 3,
     "Kundenummer", "no such property"},
    {"property of another kind",
     R"({"type":"Auftrag","Kundennummer":"1","Positionen":[{"Artikelnummer":"A","Menge":1}],"Preisliste":"1"})",
     1, "Preisliste", "no such property"},
    {"positions of a customer", R"({"type":"Kunde","Kundennummer":"1","Bez1":"N","Positionen":[]})", 1,
     "Positionen", "no such property"},
    {"unknown type", R"({"type":"Lieferant"})", 1, "type", "\"Lieferant\" is not a type"},
    {"missing type", "[{\"type\":\"Kunde\",\"Kundennummer\":\"1\",\"Bez1\":\"N\"},\n\n{\"Bez1\":\"x\"}]", 3,
     "type", "object 2: "},
    {"type that is no text", R"({"type":10})", 1, "type", "a text is expected, not a number"},
    {"number for a text", R"({"type":"Kunde","Bez1":"N","Kundennummer":10001})", 1, "Kundennummer",
     "a text is expected, not a number"},
    {"text for a number", R"({"type":"Vertrag","Menge":"2"})", 1, "Menge",
     "a number is expected, not a text"},
    {"text for a truth value",
     R"({"type":"Auftrag","Kundennummer":"1","Positionen":[{"Artikelnummer":"A","Menge":1}],"NeukundeJN":"true"})",
     1, "NeukundeJN", "true or false is expected"},
    {"object for a text", R"({"type":"Kunde","Kundennummer":"1","Bez1":{}})", 1, "Bez1",
     "an object is not expected"},
    {"array for a text", R"({"type":"Kunde","Kundennummer":"1","Bez1":["x"]})", 1, "Bez1",
     "an array is not expected"},
    {"object for the positions", R"({"type":"Auftrag","Kundennummer":"1","Positionen":{}})", 1, "Positionen",
     "an object is not"},
    {"text for the positions", R"({"type":"Auftrag","Kundennummer":"1","Positionen":"keine"})", 1,
     "Positionen", "an array of"},
    {"positions that are no objects", "{\"type\":\"Auftrag\",\"Kundennummer\":\"1\",\"Positionen\":[\n1]}", 2,
     "Positionen", "not a number"},
    {"16 bits exceeded", R"({"type":"Kunde","Kundennummer":"1","Bez1":"N","Preistyp":32768})", 1, "Preistyp",
     "between -32768 and 32767"},
    {"32 bits exceeded",
     R"({"type":"Auftrag","Kundennummer":"1","Positionen":[{"Artikelnummer":"A","Menge":1}],"KostID":-2147483649})",
     1, "KostID", "between -2147483648"},
    {"64 bits exceeded",
     R"({"type":"Auftrag","Kundennummer":"1","Positionen":[{"Artikelnummer":"A","Menge":1}],"KostID":18446744073709551615})",
     1, "KostID", "between"},
    {"broken number for a whole one", R"({"type":"Vertrag","Intervall":1.5})", 1, "Intervall",
     "a whole number"},
    {"number that no double holds", R"({"type":"Vertrag","Menge":1e999})", 1, "", "not valid JSON"},
    {"day that does not exist", R"({"type":"Kunde","Kundennummer":"1","Bez1":"N","KundeSeit":"31.02.2026"})",
     1, "KundeSeit", "is not a date"},
    {"date in another form", R"({"type":"Kunde","Kundennummer":"1","Bez1":"N","Eingangsdatum":"11/24/2026"})",
     1, "Eingangsdatum", "is not a date"},
    {"open end outside of a contract's end", R"({"type":"Vertrag","Vertragsbeginn":"999999"})", 1,
     "Vertragsbeginn", "is not a date"},
    {"time for no date outside of contracts",
     R"({"type":"Kunde","Kundennummer":"1","Bez1":"N","KundeSeit":"00:00:00"})", 1, "KundeSeit",
     "is not a date"},
    {"NUL in the name of a property", R"({"type":"Kunde","Kundennummer":"1","Bez1\u0000x":"a"})", 1,
     std::string_view("Bez1\0x", 6), R"(property "Bez1\0x": the type has no such property)"},
    {"NUL in a text", R"({"type":"Kunde","Kundennummer":"1","Bez1":"a\u0000b"})", 1, "Bez1", "NUL"},
    {"bytes that are not UTF-8", "{\"type\":\"Kunde\",\"Kundennummer\":\"1\",\n\"Bez1\":\"M\xFCller\"}", 2,
     "", "bytes that are not UTF-8"},
    {"half of a pair", R"({"type":"Kunde","Kundennummer":"1","Bez1":"\uD66D\uDE00"})", 1, "",
     "half of a surrogate pair"},
    {"line break in a text", "{\"type\":\"Kunde\",\"Kundennummer\":\"1\",\n\"Bez1\":\"a\nb\"}", 2, "",
     "a text holds a line break"},
    {"control character in a text", "{\"type\":\"Kunde\",\"Kundennummer\":\"1\",\n\"Bez1\":\"a\x1B[2J\"}", 2,
     "", "a text holds a control"},
    {"name without quotes", "{\"type\":\"Kunde\",\"Kundennummer\":\"1\",\nBez1:\"a\"}", 2, "",
     "a name in double quotes is expected"},
    {"comma that is missing", "{\"type\":\"Kunde\",\"Kundennummer\":\"1\"\n\"Bez1\":\"a\"}", 2, "",
     "a comma or } is expected"},
    {"key of 33 characters",
     R"({"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"123456789012345678901234567890123"})", 1,
     "JobID", "at most 32 characters"},
    {"position key of 33 characters",
     R"({"type":"Auftrag","Kundennummer":"1","Positionen":[{"ChildID":"123456789012345678901234567890123"}]})",
     1, "Positionen[1].ChildID", "at most 32 characters"},
    {"parked code", R"({"type":"Kunde","Kundennummer":"1","Bez1":"N","JobType":11})", 1, "JobType",
     "has the code 10"},
    {"done code",
     R"({"type":"Auftrag","Kundennummer":"1","Positionen":[{"Artikelnummer":"A","Menge":1}],"JobType":33})",
     1, "JobType", "has the code 30"},
    {"code of another kind", R"({"type":"Vertrag","JobType":10})", 1, "JobType", "has the code 20 or 40"},
    {"positions of a contract that belongs to a customer",
     "{\"Positionen\":[\n{}],\"JobType\":40,\n\"type\":\"Vertrag\"}", 1, "Positionen",
     "a contract of a customer (JobType 40) has none"},
    {"code of a position", R"({"type":"Auftrag","Kundennummer":"1","Positionen":[{"JobType":1001}]})", 1,
     "Positionen[1].JobType", "code of these positions is 50"},
    {"position without an article",
     "{\"type\":\"Auftrag\",\"Kundennummer\":\"1\",\"Positionen\":[\n{\"Menge\":1}]}", 2,
     "Positionen[1].Artikelnummer", "needs it"},
    {"position without a quantity",
     "{\"type\":\"Auftrag\",\"Kundennummer\":\"1\",\"Positionen\":[{\"Artikelnummer\":\"A\",\n\"Menge\":null}"
     "]}",
     2, "Positionen[1].Menge", "needs it"},
    {"some positions with a number",
     "{\"Positionen\":[{\"Artikelnummer\":\"A\",\"Menge\":1,\"Positionsnummer\":1},\n"
     "{\"Artikelnummer\":\"A\",\"Menge\":1}],\"type\":\"Auftrag\",\"Kundennummer\":\"1\"}",
     2, "Positionen[2].Positionsnummer", "all positions of an order have one or none"},
    {"property twice", "{\"type\":\"Kunde\",\"Kundennummer\":\"1\",\n\"Bez1\":\"a\",\n\"Bez1\":\"b\"}", 3,
     "Bez1", "already given on line 2"},
    {"property twice before the type",
     "{\"Bez1\":\"a\",\n\"Bez1\":null,\"type\":\"Kunde\",\"Kundennummer\":\"1\"}", 2, "Bez1",
     "already given on line 1"},
    {"type twice", "{\"type\":\"Kunde\",\"Kundennummer\":\"1\",\"Bez1\":\"N\",\n\"type\":\"Kunde\"}", 2,
     "type", "already given on line 1"},
    {"positions twice", "{\"type\":\"Auftrag\",\"Kundennummer\":\"1\",\"Positionen\":[],\n\"Positionen\":[]}",
     2, "Positionen", "already given on line 1"},
    {"unknown property of a position",
     "{\"type\":\"Auftrag\",\"Kundennummer\":\"1\",\"Positionen\":[{\"Artikelnummer\":\"A\",\"Menge\":1},\n{"
     "\"Artikel\":\"1\"}]}",
     2, "Positionen[2].Artikel", "no such property"},
    {"wrong value of a position that stands before the type",
     "{\"Positionen\":[\n{\"Menge\":\"2\"}],\n\"type\":\"Auftrag\",\"Kundennummer\":\"1\"}", 2,
     "Positionen[1].Menge", "a number is expected"},
    {"job key twice",
     "{\"type\":\"Kunde\",\"Kundennummer\":\"1\",\"Bez1\":\"N\",\"JobID\":\"A1\"}\n{\"type\":\"Kunde\","
     "\"Kundennummer\":\"1\",\"Bez1\":\"N\",\"JobID\":\"a1\"}",
     2, "JobID", "stands already in object 1 on line 1"},
    {"position key twice",
     "{\"type\":\"Auftrag\",\"Kundennummer\":\"1\",\"Positionen\":[{\"ChildID\":\"P\",\"Artikelnummer\":"
     "\"A\",\"Menge\":1},\n{"
     "\"ChildID\":\"P\",\"Artikelnummer\":\"A\",\"Menge\":1}]}",
     2, "ChildID", "stands already in object 1 on line 1"},
    {"position of another job",
     R"({"type":"Auftrag","Kundennummer":"1","JobID":"A","Positionen":[{"JobID":"B","Artikelnummer":"A","Menge":1}]})",
     1, "JobID", "the JobID 'B' of another job"},
    {"kept job without its code", "[\n{\"type\":\"ImportKopf\",\"JobID\":\"A\"}]", 2, "JobType",
     "needs the code"},
    {"comma too many", "[\n{\"type\":\"Kunde\",\"Kundennummer\":\"1\",\"Bez1\":\"N\"},\n]", 3, "",
     "not valid JSON"},
    {"end in the middle", "[{\"type\":\"Kunde\",\"Kundennummer\":\"1\",\"Bez1\":\"N\"},\n{\"type\":", 2, "",
     "it ends in the middle"},
    {"something after the array",
     "[{\"type\":\"Kunde\",\"Kundennummer\":\"1\",\"Bez1\":\"N\"}]\n{\"type\":\"Kunde\",\"Kundennummer\":"
     "\"1\",\"Bez1\":\"N\"}",
     1, "", "follows the array"},
    {"no object", "\"Kunde\"", 1, "", "an object is expected, not a text"},
    {"array in the array", "[[]]", 1, "", "an object is expected, not an array"},
    {"nothing at all", " \n", 1, "", "the file is empty"},
};

class StagingRefusals : public ProgramTest {};

TEST_F(StagingRefusals, NameLineObjectAndPropertyAndStageNothing) {
  for (const Refusal& refusal : refusals) {
    SCOPED_TRACE(refusal.rule);
    erp.folder.write("jobs.json", refusal.jobs);
    const std::string file = (erp.folder.path() / "jobs.json").string();
    const ProgramResult result = run({"stage", file, "--json"});
    EXPECT_EQ(result.status, 2);
    const Json error = result.json();
    EXPECT_EQ(error["file"], file);
    EXPECT_EQ(error["line"], refusal.line);
    EXPECT_EQ(error["field"], refusal.field.empty() ? Json() : Json(refusal.field));
    EXPECT_NE(error["error"].get<std::string>().find(refusal.message), std::string::npos) << error["error"];
    EXPECT_EQ(erp.count("Select Count(*) From ImportKopf"_sql), 0);
    EXPECT_EQ(erp.count("Select Count(*) From ImportPos"_sql), 0);
  }
}

TEST_F(StagingRefusals, TellPeopleThePlaceAndTheNextStepOnStandardError) {
  const ProgramResult result =
      run({"stage", "-"}, "{\"type\":\"Kunde\",\"Kundennummer\":\"1\",\"Bez1\":\"N\",\n\"Foo\":1}");
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.messages,
            "qximportjob: standard input, line 2: object 1: property \"Foo\": the type has no such property\n"
            "Nothing was staged. Correct the file and stage it again; 'qximportjob schema' lists the "
            "properties.\n");
}

TEST_F(StagingRefusals, AGoodJobBeforeABadOneIsNotStaged) {
  EXPECT_EQ(
      stage(
          R"([{"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"A"},{"type":"Kunde","Kundennummer":"1","Bez1":"N","Foo":1}])")
          .status,
      2);
  EXPECT_TRUE(listed().empty());
}

TEST_F(StagingRefusals, APositionKeyOfAnotherStagedJobIsRefused) {
  ASSERT_EQ(
      stage(
          R"({"type":"Auftrag","Kundennummer":"1","JobID":"A","Positionen":[{"ChildID":"P","Artikelnummer":"A","Menge":1}]})")
          .status,
      0);
  const ProgramResult result =
      stage("{\"type\":\"Kunde\",\"Kundennummer\":\"1\",\"Bez1\":\"N\",\"JobID\":\"K\"}\n{\"type\":"
            "\"Auftrag\",\"Kundennummer\":\"1\",\"JobID\":"
            "\"B\",\"Positionen\":[{\"ChildID\":\"p\",\"Artikelnummer\":\"A\",\"Menge\":1}]}");
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.json()["line"], 2);
  EXPECT_NE(result.output.find("belongs to the job 'A'"), std::string::npos);
  EXPECT_EQ(listed(), std::vector<std::string>{"A"});
}

TEST_F(StagingRefusals, AMissingFileOrAFolderIsBadInput) {
  const std::string missing = (erp.folder.path() / "missing.json").string();
  EXPECT_EQ(run({"stage", missing}).status, 2);
  const ProgramResult folder = run({"stage", erp.folder.path().string(), "--json"});
  EXPECT_EQ(folder.status, 2);
  EXPECT_EQ(folder.json()["file"], erp.folder.path().string());
}

} // namespace
} // namespace qx
