// The tables hold everything that the component reads and writes.
#include "erp/schema.h"

#include "adapters/sqlite/sqlite_database.h"
#include "model/entry_records.h"
#include "standalone_fixture.h"

#include <algorithm>
#include <set>
#include <vector>

namespace qx::erp {
namespace {

using SchemaTest = StandaloneErpTest;

bool holds(ColumnType column, FieldKind kind) {
  switch (kind) {
  case FieldKind::Int16:
    return column == ColumnType::Small;
  case FieldKind::Int32:
    return column == ColumnType::Integer;
  case FieldKind::Double:
    return column == ColumnType::Double;
  case FieldKind::Boolean:
    return column == ColumnType::Boolean;
  case FieldKind::Date:
  case FieldKind::Text:
    break;
  }
  return column == ColumnType::Text || column == ColumnType::Code;
}

/// The stored properties that the table has no column for, or one of another kind.
template <class Table>
std::string unfit(std::string_view tableName, const Table& fields) {
  const std::vector<SchemaTable> tables = schemaTables();
  const SchemaTable& table = *std::ranges::find(tables, tableName, &SchemaTable::name);
  std::string names;
  for (const auto& field : fields) {
    const auto column = std::ranges::find(table.columns, field.column, &SchemaColumn::name);
    if (field.stored() && (column == table.columns.end() || !holds(column->type, field.kind)))
      names += std::string(field.name) + " ";
  }
  return names;
}

TEST_F(SchemaTest, EveryStoredPropertyHasAStagingColumnOfItsKind) {
  EXPECT_EQ(unfit("ImportKopf", kundeFields), "");
  EXPECT_EQ(unfit("ImportKopf", vertragFields), "");
  EXPECT_EQ(unfit("ImportKopf", auftragFields), "");
  EXPECT_EQ(unfit("ImportPos", auftragsPosFields), "Positionsnummer ") << "a number that is stored as a text";
}

// Column lookup folds case and sharp s, so two such names in a table would hide one another.
TEST_F(SchemaTest, NoTwoColumnsOfATableDifferInCaseOrSharpSOnly) {
  for (const SchemaTable& table : schemaTables()) {
    std::set<std::uint64_t> hashes;
    for (const SchemaColumn& column : table.columns) {
      EXPECT_TRUE(hashes.insert(foldedNameHash(column.name)).second) << table.name << "." << column.name;
    }
  }
}

// A database that reports names in lower case does not say of which table they are.
TEST_F(SchemaTest, AColumnIsSpelledTheSameInEveryTable) {
  std::set<std::string> spelled;
  std::set<std::string> lowered;
  for (const std::string_view name : schemaNames()) {
    const bool added = spelled.emplace(name).second;
    EXPECT_EQ(lowered.insert(asciiLower(name)).second, added) << name;
  }
}

TEST_F(SchemaTest, CodesCompareWithoutRegardToCaseAndKeysAreUnique) {
  file.execute("Insert Into Versandtexte (Versandart) Values ('Post')"_sql);
  EXPECT_EQ(file.count("Select Count(*) From Versandtexte Where Versandart = 'POST'"_sql), 1);
  EXPECT_THROW(file.execute("Insert Into Versandtexte (Versandart) Values ('post')"_sql), StatementError);
  EXPECT_THROW(file.execute("Insert Into Versandtexte (Kurztext) Values ('ohne')"_sql), StatementError);
  file.execute("Insert Into Adressenstamm (Adressnummer) Values ('1')"_sql);
  EXPECT_NO_THROW(file.execute("Insert Into Adressenstamm (Adressnummer) Values ('1')"_sql))
      << "addresses of no customer";
}

TEST_F(SchemaTest, ANewCustomerIsTaxableWithoutSayingHow) {
  file.execute("Insert Into Kundenstamm (Kundennummer) Values ('70001')"_sql);
  const auto customer = file.open("Select * From Kundenstamm"_sql);
  EXPECT_EQ(customer->value("Preistyp"), Value(0));
  const Value taxKey = file.single(
      "Select Steuerschlüssel From Steuerschlüsselzuordnung Where MwStKZArtikel = 'V' And MwStKZKunde = '"_sql,
      value(customer->text("MwSt_KZ")), "'"_sql);
  EXPECT_EQ(file.single("Select MwSt_Satz From Steuerschlüssel Where Steuerschlüssel='"_sql,
                        value(taxKey.text()), "'"_sql),
            Value(19.0));
}

TEST_F(SchemaTest, OnlyADatabaseOfOursHasASchemaVersion) {
  EXPECT_EQ(storedSchemaVersion(database()), std::to_string(schemaVersion));
  const auto other = SqliteDatabase().create((file.folder.path() / "leer.db").string());
  EXPECT_EQ(storedSchemaVersion(*other), std::nullopt);
}

TEST_F(SchemaTest, ASecondCreationIsRefusedAndLeavesEverythingAsItWas) {
  {
    WorkUnit unit(database());
    EXPECT_THROW(createSchema(database()), StatementError);
  }
  EXPECT_EQ(file.count("Select Count(*) From Schemastand"_sql), 1);
}

} // namespace
} // namespace qx::erp
