// Units of work whose writes wait and whose reads are answered from memory: nobody may notice.
#include "conformance_fixture.h"

#include <array>
#include <functional>
#include <random>
#include <vector>

namespace qx {
namespace {

class CollectedUnit : public DatabaseConformance {
protected:
  void SetUp() override {
    DatabaseConformance::SetUp();
    for (const std::string_view key : {"a1", "a2", "b1"}) add(key, 10, "1.2.2026", key.substr(0, 1));
  }
  Connection& database() { return *connection_; }
  std::string listed(const Sql& statement) { return contentOf(*connection_->open(statement)); }
  static std::string contentOf(Recordset& rows) {
    std::string all;
    for (; !rows.eof(); rows.moveNext()) {
      for (std::size_t i = 0; i < rows.fieldCount(); ++i)
        all += rows.value(i).isNull() ? "-|" : rows.value(i).text() + "|";
      all += ' ';
    }
    return all;
  }
  std::string table() { return listed(sql("Select * From ImportKopf Order By JobID"_sql)); }
};

INSTANTIATE_TEST_SUITE_P(Sqlite, CollectedUnit, ::testing::Values(kind<SqliteFile>("sqlite")));
INSTANTIATE_TEST_SUITE_P(Server, CollectedUnit, ::testing::Values(kind<ServerSchema>("odbc")));

/// Reads and writes by chance, the same ones for the same seed.
class RandomWork {
public:
  RandomWork(Connection& connection, std::uint32_t seed, std::function<std::string(const Sql&)> listed)
      : connection_(connection), random_(seed), listed_(std::move(listed)) {}

  /// Returns all that was read.
  std::string perform(int steps) {
    for (int i = 0; i < steps; ++i) step();
    return read_;
  }

private:
  int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
  std::string key() { return keys_[static_cast<std::size_t>(below(static_cast<int>(keys_.size())))]; }
  std::string customer() { return std::string(1, "abA"[below(3)]); }
  Value anyText() { return below(4) == 0 ? Value::null() : Value("x" + std::to_string(below(3))); }

  void step() {
    switch (below(10)) {
    case 0:
      read_ += listed_(sql("Select * From ImportKopf Where JobID = '"_sql, value(key()), "'"_sql));
      break;
    case 1:
      read_ += listed_(sql("Select Kundennummer, Land From ImportKopf Where Kundennummer = '"_sql,
                           value(customer()), "'"_sql));
      break;
    case 2:
      read_ += listed_(sql("Select Land From ImportKopf Where Kundennummer  = '"_sql, value(customer()),
                           "' Order By JobID Desc"_sql));
      break;
    case 3:
      read_ +=
          listed_(sql("Select Land, JobType From ImportKopf Where JobID  = '"_sql, value(key()), "'"_sql));
      break;
    case 4:
      addRow();
      break;
    case 5:
      changeRow();
      break;
    case 6:
      changeByStatement();
      break;
    case 7:
      part();
      break;
    case 8:
      deleteRow();
      break;
    default:
      connection_.put(
          "Kostenzuordnung",
          std::array{ColumnValue{"KostID", Value(below(3))}, ColumnValue{"Kostenstelle", anyText()}}, 1);
      read_ += listed_(sql("Select * From Kostenzuordnung Where KostID = "_sql, number(below(3))));
    }
  }
  void addRow() {
    const auto rows = connection_.open(sql("Select * From ImportKopf Where JobID = ''"_sql));
    keys_.push_back("n" + std::to_string(++added_));
    rows->addNew();
    rows->set("JobID", Value(keys_.back()));
    rows->set("Kundennummer", Value(customer()));
    rows->set("JobType", Value(std::int16_t{10}));
    rows->set("Betrag", Value(below(50)));
    // A default that is read before the row is sent costs the unit.
    rows->set("Land", anyText());
    rows->update();
  }
  void changeRow() {
    const auto rows =
        below(2) == 0
            ? connection_.openKeyset(
                  sql("Select * From ImportKopf Where Kundennummer = '"_sql, value(customer()), "'"_sql))
            : connection_.open(sql("Select * From ImportKopf Where JobID = '"_sql, value(key()), "'"_sql));
    if (rows->eof()) return;
    if (below(2) == 0) rows->set("Land", anyText());
    if (below(3) == 0) rows->set("Kundennummer", Value(customer()));
    rows->set("Preis", Value(below(9) / 2.0));
    rows->update();
    if (below(2) == 0 && rows->resync()) read_ += rows->text("Land") + rows->text("Preis");
  }
  void changeByStatement() {
    const std::string row = key();
    const bool changed =
        below(2) == 0
            ? connection_.changeOne("ImportKopf",
                                    sql("Update ImportKopf Set Land = '"_sql, nullable(anyText().text()),
                                        "' Where JobID = '"_sql, value(row), "'"_sql))
            : connection_.changeOne("ImportKopf",
                                    sql("Update ImportKopf Set Land = '"_sql, nullable(anyText().text()),
                                        "' Where JobType = 10 And JobID >= '"_sql, value(row),
                                        "' And JobID <= '"_sql, value(row), "'"_sql));
    read_ += changed ? "" : "none ";
  }
  void deleteRow() {
    if (keys_.size() < 3) return;
    connection_.execute(sql("Delete From ImportKopf Where JobID = '"_sql, value(keys_.back()), "'"_sql));
    keys_.pop_back();
  }
  void part() {
    Savepoint part(connection_);
    const auto known = keys_;
    const int inside = below(5);
    for (int i = 0; i < inside; ++i) step();
    if (below(2) == 0)
      part.release();
    else
      keys_ = known;
  }

  Connection& connection_;
  std::mt19937 random_;
  std::function<std::string(const Sql&)> listed_;
  std::vector<std::string> keys_{"a1", "a2", "b1"};
  int added_ = 0;
  std::string read_;
};

TEST_P(CollectedUnit, ReadsAndLeavesWhatOneThatWritesAtOnceDoesUnlessItIsLost) {
  int kept = 0;
  for (std::uint32_t seed = 1; seed <= 40; ++seed) {
    const auto work = [&](bool collected) {
      SetUp();
      WorkUnit unit(database());
      if (collected) database().collectWrites();
      RandomWork random(database(), seed, [this](const Sql& statement) { return listed(statement); });
      std::string read = random.perform(30);
      unit.commit();
      return read + "\n" + table();
    };
    const std::string expected = work(false);
    try {
      ASSERT_EQ(work(true), expected) << "seed " << seed;
      ++kept;
    } catch (const WorkLostError&) {
      // It has taken new rows for all rows of a result, which the commit does not let pass.
    }
  }
  EXPECT_GT(kept, 12);
}

TEST_P(CollectedUnit, IsLostWhenTheDatabaseRefusesARowOrHoldsAnotherValue) {
  const auto written = table();
  {
    WorkUnit unit(database());
    database().collectWrites();
    add("c", 10, "", "c");
    add("A1", 10, "", "c");
    EXPECT_THROW(unit.commit(), WorkLostError) << "the key is there in another spelling";
  }
  EXPECT_EQ(table(), written);
  {
    WorkUnit unit(database());
    database().collectWrites();
    const Sql row = sql("Select JobID, JobType From ImportKopf Where JobID = 'c'"_sql);
    const auto rows = database().open(row);
    rows->addNew();
    rows->set("JobID", Value("c"));
    rows->set("JobType", Value("007"));
    rows->update();
    listed(row);
    EXPECT_THROW(unit.commit(), WorkLostError) << "the column holds numbers";
  }
  EXPECT_EQ(table(), written);
}

TEST_P(CollectedUnit, IsLostWhenANewRowIsChangedThatItsStatementDoesNotFind) {
  WorkUnit unit(database());
  database().collectWrites();
  const auto rows = database().open(sql("Select * From ImportKopf Where Kundennummer = 'b'"_sql));
  rows->addNew();
  rows->set("JobID", Value("c"));
  rows->set("Kundennummer", Value("c"));
  rows->update();
  add("d", 10, "", "b");
  rows->set("Land", Value("CH"));
  EXPECT_THROW(rows->update(), WorkLostError) << "in the place of the new row is another one by now";
}

TEST_P(CollectedUnit, IsLostWhenAPartIsUndoneThatWasAnsweredWrongly) {
  const auto ofCustomer = [this] {
    return listed(sql("Select JobID From ImportKopf Where Kundennummer = 'b'"_sql));
  };
  EXPECT_EQ(ofCustomer(), "b1| ");
  WorkUnit unit(database());
  database().collectWrites();
  {
    Savepoint part(database());
    add("c", 10, "", "b");
    EXPECT_EQ(ofCustomer(), "c| ") << "the row that was there before is not known in this unit";
  }
  EXPECT_THROW(unit.commit(), WorkLostError);
}

} // namespace
} // namespace qx
