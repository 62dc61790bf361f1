// The list of the job view: its statement, its rows and its counts.
#include "store/job_list.h"

#include "adapters/sql/translation.h"
#include "store/parked_jobs.h"
#include "support/erp_file.h"

#include <gtest/gtest.h>

#include <sqlite3.h>

#include <array>
#include <memory>
#include <utility>

namespace qx {
namespace {

constexpr std::array allKeys{JobListKey::Eingangsdatum, JobListKey::JobType, JobListKey::FormatDatum,
                             JobListKey::Kundennummer,  JobListKey::Bez1,    JobListKey::Betreff};
constexpr std::array filters{JobListFilter{}, JobListFilter{true, true, true, true},
                             JobListFilter{false, false, true, false},
                             JobListFilter{false, false, false, false}};

TEST(JobListQuery, IsTheStatedTextWithFragmentsThatMeetWithoutABlank) {
  const std::string begin =
      "Select Top 2000 JobType, JobID, JobType as Vorgang, Eingangsdatum, Kundennummer, Bez1, Bemerkung, "
      "Convert(DateTime, Eingangsdatum, 104) as FormatDatum, Betreff  From [ImportKopf]Where JobType = '0' ";
  EXPECT_EQ(jobListQuery({}, {}).text(),
            begin +
                "Or JobType = '10' Or JobType = '20' Or JobType = '30'Or JobType = '11' Or JobType = '21' "
                "Or JobType = '31'Or JobType = '12' Or JobType = '22' Or JobType = '32' "
                "Order by Eingangsdatum DESC");
  EXPECT_EQ(jobListQuery({false, true, false, false}, {JobListKey::FormatDatum, false}).text(),
            begin + "Or JobType = '13' Or JobType = '23' Or JobType = '33' Order by FormatDatum ");
  EXPECT_EQ(jobListQuery({false, false, false, false}, {JobListKey::Betreff, true}).text(),
            begin + " Order by Betreff DESC");
}

class JobListTest : public ::testing::Test {
protected:
  /// Rows with ties in every key, nulls, unreadable dates and names that differ in case only.
  void stage(int count) {
    constexpr std::array types{10, 11, 12, 13, 20, 21, 22, 23, 30, 31, 32, 33, 40, 43, 44, 0};
    constexpr std::array dates{"24.11.2026", "01.12.2025", "2.1.2026", "",
                               "kein Datum", "31.02.2026", "24.11.26"};
    constexpr std::array names{"Müller", "müller", "MEIER", "Meier", "", "Zander", "abel"};
    WorkUnit unit(erp.connection());
    const auto rows = erp.open("Select * From ImportKopf Where 1 = 0"_sql);
    unsigned mixed = 1;
    for (int i = 0; i < count; ++i) {
      mixed = mixed * 1103515245U + 12345U;
      const unsigned chance = mixed >> 8U;
      rows->addNew();
      rows->set("JobID", Value("J" + std::to_string(i)));
      rows->set("JobType", Value(std::int64_t{types[chance % types.size()]}));
      if (chance % 17 != 0) rows->set("Eingangsdatum", Value(dates[chance / 16 % dates.size()]));
      if (chance % 13 != 0) rows->set("Kundennummer", Value(std::to_string(chance / 64 % 50)));
      if (chance % 11 != 0) rows->set("Bez1", Value(names[chance / 128 % names.size()]));
      if (chance % 7 != 0) rows->set("Betreff", Value(chance % 2 == 0 ? "Betreff" : "BETREFF"));
      rows->update();
    }
    unit.commit();
  }

  /// The keys of the same jobs without a limit, sorted by the database as a whole, cut off here.
  std::vector<std::string> plainly(const JobListFilter& filter, const JobListOrder& order) {
    Sql query = sql("Select JobID, Convert(DateTime, Eingangsdatum, 104) as FormatDatum From ImportKopf "
                    "Where JobType In (0"_sql);
    for (const auto& [wanted, state] : {std::pair(filter.waiting, 0), std::pair(filter.warnings, 1),
                                        std::pair(filter.errors, 2), std::pair(filter.done, 3)})
      for (const int kind : {10, 20, 30})
        if (wanted) query.append(sql(", "_sql, number(kind + state)));
    query.append(sql(")"_sql)).append(orderOf(order.key));
    if (order.descending) query.append(sql("DESC"_sql));
    std::vector<std::string> keys;
    for (const auto rows = erp.connection().open(query); !rows->eof() && keys.size() < jobListLimit;
         rows->moveNext())
      keys.push_back(rows->text("JobID"));
    return keys;
  }

  static Sql orderOf(JobListKey key) {
    switch (key) {
    case JobListKey::JobType:
      return sql(" Order by JobType "_sql);
    case JobListKey::Kundennummer:
      return sql(" Order by Kundennummer "_sql);
    case JobListKey::Bez1:
      return sql(" Order by Bez1 "_sql);
    case JobListKey::Betreff:
      return sql(" Order by Betreff "_sql);
    default:
      return sql(" Order by FormatDatum "_sql);
    }
  }

  ErpFile erp;
};

TEST_F(JobListTest, HasTheRowsOfThePlainStatementInItsOrder) {
  stage(9000);
  for (const JobListFilter& filter : filters)
    for (const JobListKey key : allKeys)
      for (const bool descending : {false, true}) {
        const JobListOrder order{key, descending};
        const auto rows = readJobList(erp.connection(), filter, order);
        std::vector<std::string> keys;
        for (const JobListRow& row : rows) keys.push_back(row.jobId);
        ASSERT_EQ(keys, plainly(filter, order)) << jobListQuery(filter, order).text();
      }
  EXPECT_EQ(readJobList(erp.connection(), {}, {}).size(), jobListLimit);
}

TEST_F(JobListTest, EachColumnOfARowStandsInItsOwnField) {
  const auto row = erp.open("Select * From ImportKopf Where 1 = 0"_sql);
  row->addNew();
  row->set("JobID", Value("J1"));
  row->set("JobType", Value(std::int64_t{31}));
  row->set("Eingangsdatum", Value("24.11.2026"));
  row->set("Kundennummer", Value("10010"));
  row->set("Bez1", Value("Bergmann"));
  row->set("Bemerkung", Value("bitte anrufen"));
  row->set("Betreff", Value("Shop"));
  row->update();
  const auto rows = readJobList(erp.connection(), {}, {});
  ASSERT_EQ(rows.size(), 1U);
  const JobListRow& found = rows.front();
  EXPECT_EQ(found.jobType, 31);
  EXPECT_EQ(found.jobId, "J1");
  EXPECT_EQ(found.received, "24.11.2026");
  EXPECT_EQ(found.customer, "10010");
  EXPECT_EQ(found.name, "Bergmann");
  EXPECT_EQ(found.remark, "bitte anrufen");
  EXPECT_EQ(found.subject, "Shop");
  EXPECT_EQ(found.date, makeDate(2026, 11, 24));
}

TEST_F(JobListTest, ASearchTakesEveryLetterLiterallyAndInAnyCase) {
  const auto stageOne = [&](const char* key, const char* name, const char* customer, const char* subject) {
    erp.execute(
        "Insert Into ImportKopf (JobID, JobType, Bez1, Kundennummer, Betreff, Eingangsdatum) Values ('"_sql,
        value(key), "', 10, '"_sql, value(name), "', '"_sql, value(customer), "', '"_sql, value(subject),
        "', '24.11.2026')"_sql);
  };
  stageOne("A", "Ölmann & Söhne", "70331", "50% auf alles");
  stageOne("B", "OLMANN", "70332", "50 x");
  stageOne("C", "Straße_7", "70333", "");
  erp.execute("Insert Into ImportKopf (JobID, JobType) Values ('D', 10)"_sql);
  const auto found = [&](std::string_view text) {
    std::string keys;
    for (const JobListRow& row :
         findJobs(erp.connection(), {}, {JobListKey::Kundennummer, false}, JobSearch(text)))
      keys += row.jobId;
    return keys;
  };
  EXPECT_EQ(found("ölMANN"), "A");
  EXPECT_EQ(found("olmann"), "B");
  EXPECT_EQ(found("50%"), "A");
  EXPECT_EQ(found("straße_"), "C");
  EXPECT_EQ(found(" mann  7033 "), "AB");
  EXPECT_EQ(found("'"), "");
  EXPECT_EQ(found("").size(), 4U);
  const JobKeys among{"B", "C"};
  EXPECT_EQ(findJobs(erp.connection(), {}, {}, JobSearch("7033"), &among).size(), 2U);
}

TEST_F(JobListTest, ParkedJobsAreKnownByReleaseReasonsAndContracts) {
  const auto stageOne = [&](const char* key, std::int64_t jobType, const char* reasons,
                            std::int64_t released) {
    erp.execute(
        "Insert Into ImportKopf (JobID, JobType, Kundennummer, Fehlertext, ProcessWarning) Values ('"_sql,
        value(key), "', "_sql, number(jobType), ", '100', '"_sql, value(reasons), "', "_sql, number(released),
        ")"_sql);
  };
  stageOne("A", 11, "Grund A", 1);
  stageOne("B", 32, "Grund B", 0);
  stageOne("C", 10, "", 1);
  stageOne("V", 41, "Grund V", 1);
  const ReleasedJobs released = readReleasedJobs(erp.connection());
  EXPECT_EQ(released.keys, JobKeys{"A"});
  EXPECT_EQ(released.counts, (JobCounts{0, 1, 0, 0}));
  const auto reasons = [&](const JobListFilter& filter) {
    std::string texts;
    forEachReason(erp.connection(), filter, [&](const std::string& jobId, const std::string& text) {
      texts += jobId + "=" + text + " ";
    });
    return texts;
  };
  EXPECT_EQ(reasons({true, true, true, false}), "A=Grund A ");
  EXPECT_EQ(reasons({false, false, false, true}), "B=Grund B ");
  EXPECT_EQ(contractsWithCustomer(erp.connection(), "100"), std::vector<std::string>{"V"});
}

/// The plan of a statement, one step a line.
std::string planOf(const std::string& file, const Sql& statement) {
  sqlite3* opened = nullptr;
  EXPECT_EQ(sqlite3_open(file.c_str(), &opened), SQLITE_OK);
  const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> shell(opened, &sqlite3_close);
  std::string plan;
  const auto keep = [](void* text, int count, char** values, char**) {
    static_cast<std::string*>(text)->append(values[count - 1]).append("\n");
    return 0;
  };
  EXPECT_EQ(sqlite3_exec(
                opened,
                ("EXPLAIN QUERY PLAN " + relational::translate(statement, relational::sqliteDialect)).c_str(),
                keep, &plan, nullptr),
            SQLITE_OK);
  return plan;
}

TEST_F(JobListTest, FindsItsRowsByIndexWhateverTheOrder) {
  for (const JobListKey key : allKeys)
    for (const bool descending : {false, true}) {
      const std::string plan = planOf(erp.path, jobListQuery({}, {key, descending}));
      EXPECT_EQ(plan.find("SCAN ImportKopf"), std::string::npos) << plan;
      std::size_t parts = 0;
      for (auto at = plan.find("SEARCH ImportKopf USING"); at != std::string::npos;
           at = plan.find("SEARCH ImportKopf USING", at + 1))
        ++parts;
      EXPECT_EQ(parts, 11U) << plan; // ten codes and the rows themselves
      // Only what was found is sorted: the inner selects follow their index.
      EXPECT_EQ(plan.find("TEMP B-TREE FOR RIGHT PART"), std::string::npos) << plan;
    }
}

TEST_F(JobListTest, ReadsDatesAndCountsTheStatesOfTheThreeKinds) {
  const auto add = [&](std::string_view jobId, int jobType, std::string_view date) {
    erp.execute("Insert Into ImportKopf (JobID, JobType, Eingangsdatum, Fehlertext) Values ('"_sql,
                value(jobId), "', "_sql, number(jobType), ", '"_sql, value(date), "', 'Grund')"_sql);
  };
  add("A", 10, "24.11.2026");
  add("B", 30, "unlesbar");
  add("C", 21, "1.2.26");
  for (const int jobType : {12, 13, 23, 33, 40, 41, 43, 44}) add("T" + std::to_string(jobType), jobType, "");
  EXPECT_EQ(countJobs(erp.connection()), (JobCounts{2, 1, 1, 3}));
  const auto rows =
      readJobList(erp.connection(), {true, false, true, false}, {JobListKey::Eingangsdatum, false});
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_EQ(rows[0].jobId, "B");
  EXPECT_EQ(rows[0].date, std::nullopt);
  EXPECT_EQ(rows[0].received, "unlesbar");
  EXPECT_EQ(rows[1].date, makeDate(2026, 2, 1));
  EXPECT_EQ(rows[2].jobType, 10);
  EXPECT_EQ(readJobReasons(erp.connection(), "A"), "Grund");
  EXPECT_EQ(readJobReasons(erp.connection(), "X"), "");
}

} // namespace
} // namespace qx
