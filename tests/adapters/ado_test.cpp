// A host's connection: what it is asked, what comes back, and what it reports.
#include "adapters/ado/ado_connection.h"
#include "adapters/ado/connection_text.h"
#include "adapters/sqlite/sqlite_database.h"
#include "platform/path_text.h"
#include "support/ado_objects.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace qx {
namespace {

class HostConnection : public ::testing::Test {
protected:
  HostConnection() {
    own->execute(sql("CREATE TABLE ImportKopf (JobID CODE PRIMARY KEY NOT NULL, JobType SMALLINT, Bez1 TEXT, "
                     "Preis DOUBLE, Neukunde BOOLEAN, Betrag MONEY, Tag TIMESTAMP)"_sql));
    own->execute(sql("Insert Into ImportKopf (JobID, JobType, Bez1) Values ('A', 10, 'alt')"_sql));
    host.emplace(file);
    connection = connected();
  }
  std::unique_ptr<AdoConnection> connected() {
    return std::make_unique<AdoConnection>(host->connection(),
                                           [this](std::string_view progId) { return host->create(progId); });
  }
  std::unique_ptr<Recordset> job(std::string_view key = "A") {
    return connection->open(sql("SELECT * From ImportKopf where JobID = '"_sql, value(key), "'"_sql));
  }
  /// The row as another program sees it.
  std::string stored() {
    const auto row = own->open(sql("SELECT * From ImportKopf where JobID = 'A'"_sql));
    std::string text;
    for (std::size_t i = 1; i < row->fieldCount(); ++i) text += row->value(i).text() + "|";
    return text;
  }

  TemporaryFolder folder;
  std::string file = textOf(folder.path() / pathOf("wäre.db"));
  std::unique_ptr<Connection> own = SqliteDatabase().create(file);
  std::optional<AdoDatabase> host;
  std::unique_ptr<AdoConnection> connection;
};

TEST_F(HostConnection, OpensRecordSetsAsItsUsersExpectAndBeginsNoTransaction) {
  connection->beginWork(nullptr);
  const auto row = job();
  row->set("JobType", 13);
  row->set("Bez1", "neu");
  row->set("Preis", 2.5);
  row->set("JobType", 12);
  row->update();
  connection->rollbackWork();
  EXPECT_EQ(host->opened, std::vector<std::string>{"3,1,3"});
  EXPECT_EQ(host->columns, (std::vector<std::string>{"JobType", "Bez1", "Preis", "JobType"}));
  EXPECT_EQ(stored(), "12|neu|2.5||||");
  EXPECT_EQ(host->begun, 0);
  EXPECT_FALSE(connection->ownsWork());
  EXPECT_FALSE(connection->inWork());
  connection->openStream(sql("Select JobID From ImportKopf"_sql));
  EXPECT_EQ(host->opened.back(), "3,1,1");
}

TEST_F(HostConnection, GivesEachColumnTheKindOfValueThatItTakes) {
  const auto row = job();
  row->set("JobType", "20");
  row->set("Bez1", 2.5);
  row->set("Preis", "1234.5");
  row->set("Neukunde", 1);
  row->set("Betrag", "19.9999");
  row->set("Tag", "24.11.2026");
  row->update();
  EXPECT_EQ(stored(), "20|2.5|1234.5|1|19.9999|20261124000000|");
  EXPECT_EQ(row->value("JobType"), Value(std::int64_t{20}));
  EXPECT_EQ(row->value("Preis"), Value(1234.5));
  EXPECT_EQ(row->value("Neukunde"), Value(true));
  EXPECT_EQ(row->value("Betrag"), Value(*Money::parse("19.9999")));
  EXPECT_EQ(row->value("Tag"), Value(DateTime{makeDate(2026, 11, 24)}));
  row->set("JobType", true);
  row->set("Bez1", std::string(100000, 'x') + "ä");
  row->set("Betrag", Value::null());
  row->set("Tag", DateTime{makeDate(2026, 11, 25), 10, 30, 0});
  row->update();
  EXPECT_EQ(stored(), "1|" + std::string(100000, 'x') + "ä|1234.5|1||20261125103000|");
  EXPECT_THROW(row->set("Preis", "viel"), StatementError);
}

TEST_F(HostConnection, BindsTheValuesOfStatementsByTheirKinds) {
  const std::string longText = std::string(5000, 'y');
  connection->execute(sql("Update ImportKopf Set Bez1 = '"_sql, value(longText), "' Where JobType = "_sql,
                          number(10), " And JobID = '"_sql, value("a"), "'"_sql));
  EXPECT_EQ(host->statements.back(), "Update ImportKopf Set Bez1 = ? Where JobType = ? And JobID = ?");
  EXPECT_EQ(
      connection->execute(sql("Update ImportKopf Set Preis = 1 Where JobID = '"_sql, nullable(""), "'"_sql)),
      0);
  const std::vector<ColumnValue> row{
      {"JobID", "B"}, {"Preis", 0.1}, {"Neukunde", true}, {"Betrag", *Money::parse("0.0001")}};
  connection->put("ImportKopf", row, 1);
  EXPECT_EQ(stored(), "10|" + longText + "|||||");
  const auto added = job("B");
  EXPECT_EQ(added->value("Preis"), Value(0.1));
  EXPECT_EQ(added->value("Betrag"), Value(*Money::parse("0.0001")));
}

TEST_F(HostConnection, TellsItsOwnWritesFromThoseOfOthers) {
  const auto row = job();
  connection->execute(sql("Update ImportKopf Set Bez1 = 'zwischendurch', JobType = 11"_sql));
  row->set("Bez1", "neu");
  row->update();
  EXPECT_EQ(stored(), "11|neu|||||");
  own->execute(sql("Update ImportKopf Set Bez1 = 'fremd'"_sql));
  row->set("Bez1", "mein");
  EXPECT_THROW(row->update(), StatementError);
  EXPECT_EQ(row->text("Bez1"), "mein") << "what could not be written stays pending";
  row->cancelUpdate();
  connection->execute(sql("Delete From ImportKopf"_sql));
  EXPECT_THROW(row->set("Bez1", "weg"), StatementError);
}

/// The error that a statement raises, as "kind: text (number, state)".
std::string raised(Connection& connection) {
  const auto shown = [](const char* kind, const DatabaseError& error) {
    return std::string(kind) + ": " + error.what() + " (" + std::to_string(error.nativeCode()) + ", " +
           std::string(error.sqlState()) + ")";
  };
  try {
    connection.execute(sql("Delete From ImportKopf Where JobType = 99"_sql));
  } catch (const StatementError& error) {
    return shown("statement", error);
  } catch (const BusyError& error) {
    return shown("busy", error);
  } catch (const ConnectionLostError& error) {
    return shown("lost", error);
  } catch (const MissingRightError& error) {
    return shown("right", error);
  } catch (const StoreError& error) {
    return shown("store", error);
  } catch (const DatabaseError& error) {
    return shown("other", error);
  }
  return "none";
}

TEST_F(HostConnection, ReportsTextNumberAndStateOfTheProvider) {
  const std::string name = "Provider=MSDASQL;DSN=Warenwirtschaft;UID=tester";
  host->next = {"Zeile gesperrt", "55P03", -2147467259, 0};
  EXPECT_EQ(raised(*connection), "busy: " + name + ": Zeile gesperrt (-2147467259, 55P03)");
  host->next = {"Verklemmung", "40001", -2147467259, 7};
  EXPECT_EQ(raised(*connection), "statement: Verklemmung (7, 40001)");
  host->next = {"Platte voll", "53100", -2147467259, 8};
  EXPECT_EQ(raised(*connection), "store: " + name + ": Platte voll (8, 53100)");
  host->next = {"weg", "08S01", -2147467259, 9};
  EXPECT_EQ(raised(*connection), "lost: " + name + ": weg (9, 08S01)");
  EXPECT_EQ(raised(*connection), "none") << "no failure is taken for a later one";
  host->open = false;
  EXPECT_EQ(raised(*connection),
            "lost: " + name + ": the program that owns the connection has closed it (-2146824579, )");
  EXPECT_EQ(connection->connectionString(), name);
}

TEST_F(HostConnection, SpeaksTheDialectOfItsProduct) {
  own.reset();
  // The catalogue that servers have.
  connection->execute(sql("Attach Database ':memory:' As information_schema"_sql));
  connection->execute(sql("Create Table information_schema.columns (table_name TEXT, column_name TEXT)"_sql));
  connection->execute(sql("Insert Into information_schema.columns Values ('ImportPos', 'lfd')"_sql));
  const auto asked = [&](const char* product, const Sql& statement) {
    host->product = product;
    host->statements.clear();
    const auto other = connected();
    try {
      other->open(statement);
    } catch (const StatementError&) {
      return host->statements.back(); // this database knows neither tables nor syntax
    } catch (const StoreError& error) {
      return std::string(error.what());
    }
    return host->statements.back();
  };
  const Sql list = sql("Select Top 10 JobID From ImportKopf Where JobType = "_sql, number(10));
  const Sql positions = sql("Select * From ImportPos Order by Positionsnummer DESC"_sql);
  EXPECT_EQ(asked("Microsoft SQL Server", list), "Select TOP 10 JobID From ImportKopf Where JobType = ?");
  EXPECT_EQ(asked("", positions),
            "SELECT * FROM [ImportPos] ORDER BY Positionsnummer DESC, [ImportPos].lfd DESC");
  EXPECT_EQ(asked("PostgreSQL", positions),
            "SELECT * FROM \"importpos\" ORDER BY Positionsnummer DESC NULLS LAST, \"importpos\".lfd DESC");
  EXPECT_EQ(
      asked("MS Jet", list),
      "Provider=MSDASQL;DSN=Warenwirtschaft;UID=tester: databases of the kind 'MS Jet' are not supported");
  // The server's own numbers say more than its states.
  host->product = "Microsoft SQL Server";
  const auto server = connected();
  raised(*server);
  host->next = {"Sperre", "HYT00", -2147467259, 1222};
  EXPECT_EQ(raised(*server).substr(0, 5), "busy:");
  host->next = {"kein Recht", "42000", -2147217911, 229};
  EXPECT_EQ(raised(*server).substr(0, 6), "right:");
}

TEST(ConnectionText, IsShownWithoutPasswordsAndNamedForTheProgram) {
  using ado::programTarget;
  using ado::withoutPasswords;
  EXPECT_EQ(withoutPasswords("Provider=SQLOLEDB; Password=\"a;b\";Data Source=srv;pwd={x;y};"),
            "Provider=SQLOLEDB;Data Source=srv");
  EXPECT_EQ(withoutPasswords("Extended Properties=\"DSN=x;PWD=y;UID=z\""),
            "Extended Properties=\"DSN=x;UID=z\"");
  EXPECT_EQ(
      programTarget("Provider=SQLOLEDB.1;Integrated Security=SSPI;Initial Catalog=WWS;Data Source=srv\\a"),
      "odbc:Driver={ODBC Driver 18 for SQL Server};Trusted_Connection=yes;Database={WWS};Server={srv\\a}");
  EXPECT_EQ(programTarget("Provider=MSOLEDBSQL;User ID=sa;Password=\"a;b}\";Server=s"),
            "odbc:Driver={ODBC Driver 18 for SQL Server};UID={sa};PWD={a;b}}};Server={s}");
  EXPECT_EQ(
      programTarget("Provider=MSDASQL.1;Persist Security Info=True;Data Source=WWS;User ID=u;Password=p"),
      "odbc:DSN=WWS;UID=u;PWD=p");
  EXPECT_EQ(programTarget("Driver={PostgreSQL Unicode};Server=h;Database=d;UID=u"),
            "odbc:Driver={PostgreSQL Unicode};Server=h;Database=d;UID=u");
  EXPECT_EQ(programTarget("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=a.mdb"), std::nullopt);
  EXPECT_EQ(programTarget(""), std::nullopt);
}

} // namespace
} // namespace qx
