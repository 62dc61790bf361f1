#include "support/server_texts.h"

#include "adapters/odbc/server.h"
#include "adapters/sql/dialect.h"
#include "adapters/sql/spelling.h"
#include "adapters/sql/statement_cache.h"
#include "adapters/sql/temporary_staging.h"
#include "model/text.h"
#include "platform/bulk_staging.h"
#include "platform/maintenance.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace qx {
namespace {

using Names = std::vector<std::string>;

/// A text that is never run; the columns of its result are those that the other database gave.
class TextStatement final : public relational::Statement {
public:
  explicit TextStatement(Names columns) : columns(std::move(columns)) {}
  std::size_t columnCount() override { return columns.size(); }
  std::string_view columnName(std::size_t index) override { return columns.at(index); }
  relational::ColumnKind columnKind(std::size_t /*index*/) override { return relational::ColumnKind::Plain; }
  void bind(std::size_t /*index*/, const Value& /*value*/) override { refuse(); }
  std::size_t parameterCount() override { return 0; }
  bool step() override { refuse(); }
  Value column(std::size_t /*index*/, relational::ColumnKind /*kind*/) override { refuse(); }
  std::int64_t run() override { refuse(); }
  void reset() noexcept override {}

  Names columns;

private:
  [[noreturn]] static void refuse() { throw std::logic_error("a text of a server is never run"); }
};

class TextDriver final : public relational::Driver {
public:
  explicit TextDriver(const char* file) : file_(file, std::ios::app | std::ios::binary) {
    const odbc::Server& server = *odbc::findServer("Microsoft SQL Server");
    for (const std::string_view text : {server.start, server.greeting, server.keyedTables, server.tables,
                                        server.begin, server.beginReading, server.commit, server.rollback})
      prepare(text, relational::StatementLife::Once);
    for (const std::string_view text : {server.set, server.undo})
      prepare(std::string(text) + "part1", relational::StatementLife::Once);
  }

  const relational::Dialect& dialect() const override { return relational::sqlServerDialect; }
  std::unique_ptr<relational::Statement> prepare(std::string_view text,
                                                 relational::StatementLife /*life*/) override {
    std::string line(text);
    replaceAll(line, "?", "@value");
    // The name that the other database has for it.
    replaceAll(line, "[rowid]", "[lfd]");
    if (!(file_ << line << '\n' << std::flush)) throw std::runtime_error("the texts cannot be written");
    return std::make_unique<TextStatement>(columns);
  }
  relational::TableKey keyOf(std::string_view table) override {
    if (equalCodes(table, "Auftragskopf")) return {"Auftragsnummer", {}, "Auftragsnummer"};
    if (equalCodes(table, "Kostenzuordnung")) return {"KostID", {}, "KostID"};
    return {"lfd", {}, {}};
  }
  std::optional<std::int64_t> insertRow(relational::Statement& /*insert*/) override { return std::nullopt; }
  std::vector<std::string> triggeredTables() override { return {}; }

  Names columns; ///< of the next statement

private:
  static void replaceAll(std::string& text, std::string_view from, std::string_view to) {
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
      text.replace(at, from.size(), to);
  }

  std::ofstream file_;
};

/// Notices which columns a row is written with.
class WatchedRecordset final : public Recordset {
public:
  WatchedRecordset(std::unique_ptr<Recordset> rows, relational::StatementCache& texts,
                   relational::RowSource& source)
      : rows_(std::move(rows)), texts_(texts), source_(source) {}

  std::size_t recordCount() const override { return rows_->recordCount(); }
  bool eof() const override { return rows_->eof(); }
  void moveFirst() override {
    moved([&] { rows_->moveFirst(); });
  }
  void moveNext() override {
    moved([&] { rows_->moveNext(); });
  }
  void moveTo(std::size_t position) override {
    moved([&] { rows_->moveTo(position); });
  }
  bool resync() override { return rows_->resync(); }
  void requery() override {
    moved([&] { rows_->requery(); });
  }
  std::size_t fieldCount() const override { return rows_->fieldCount(); }
  std::string_view fieldName(std::size_t index) const override { return rows_->fieldName(index); }
  bool hasField(ColumnName column) const override { return rows_->hasField(column); }
  const Value& value(ColumnName column) override { return rows_->value(column); }
  const Value& value(std::size_t index) override { return rows_->value(index); }
  void addNew() override {
    moved([&] { rows_->addNew(); });
    adding_ = true;
  }
  void set(ColumnName column, Value value) override {
    rows_->set(column, std::move(value));
    columns_.set(source_.shape->find(column));
  }
  void update() override {
    if (adding_)
      texts_.insert(source_, columns_);
    else if (columns_.any())
      texts_.update(source_, columns_);
    rows_->update();
    adding_ = false;
    columns_.reset();
  }
  void cancelUpdate() override {
    moved([&] { rows_->cancelUpdate(); });
  }

private:
  /// What leaves the pending row behind.
  template <class Move>
  void moved(Move move) {
    move();
    adding_ = false;
    columns_.reset();
  }

  std::unique_ptr<Recordset> rows_;
  relational::StatementCache& texts_;
  relational::RowSource& source_;
  relational::ColumnMask columns_;
  bool adding_ = false;
};

class ServerTexts final : public Connection {
public:
  ServerTexts(std::shared_ptr<Connection> connection, const char* file)
      : connection_(std::move(connection)), driver_(file), texts_(driver_, spelling_) {}

  Connection& beneath() { return *connection_; }

  const std::string& connectionString() const override { return connection_->connectionString(); }
  std::vector<std::filesystem::path> files() const override { return connection_->files(); }
  std::int64_t execute(const Sql& statement) override {
    driver_.columns.clear();
    texts_.plain(statement);
    return connection_->execute(statement);
  }
  void put(std::string_view table, std::span<const ColumnValue> row, std::size_t keys) override {
    texts_.plain(driver_.dialect().put(table, row, keys));
    connection_->put(table, row, keys);
  }
  std::unique_ptr<BulkStaging> bulkStaging() override {
    return std::make_unique<relational::TemporaryStaging>(*this);
  }
  std::unique_ptr<Maintenance> maintenance() override { return connection_->maintenance(); }
  std::vector<std::string> tableNames() override { return connection_->tableNames(); }
  std::string_view rowKey() const override { return connection_->rowKey(); }
  Sql beginsWith(const Sql& text, std::string_view prefix, bool afterPrefix) const override {
    return driver_.dialect().beginsWith(text, prefix, afterPrefix);
  }
  Sql comesAfter(std::span<const ColumnValue> position) const override {
    return driver_.dialect().comesAfter(position);
  }
  std::unique_ptr<Recordset> open(const Sql& statement) override {
    auto rows = connection_->open(statement);
    relational::RowQuery& query = texts_.rows(statement);
    auto& select = dynamic_cast<TextStatement&>(*query.select);
    select.columns = columnsOf(*rows, query.source.layout.hidden > 0);
    texts_.completeShape(query.source, select);
    return std::make_unique<WatchedRecordset>(std::move(rows), texts_, query.source);
  }
  std::unique_ptr<Recordset> openKeyset(const Sql& statement) override {
    auto rows = connection_->openKeyset(statement);
    driver_.columns = columnsOf(*rows, true);
    relational::KeysetQuery& query = texts_.keyset(statement);
    return std::make_unique<WatchedRecordset>(std::move(rows), texts_, query.source);
  }
  std::unique_ptr<Recordset> openStream(const Sql& statement) override {
    texts_.stream(statement);
    return connection_->openStream(statement);
  }

  bool ownsWork() const override { return connection_->ownsWork(); }
  bool inWork() const override { return connection_->inWork(); }
  void beginWork(BusyWait* wait) override { connection_->beginWork(wait); }
  void commitWork() override { connection_->commitWork(); }
  void rollbackWork() noexcept override { connection_->rollbackWork(); }
  void beginReading() override { connection_->beginReading(); }
  void endReading() noexcept override { connection_->endReading(); }
  void interrupt() noexcept override { connection_->interrupt(); }
  void setSavepoint() override { connection_->setSavepoint(); }
  void releaseSavepoint() override { connection_->releaseSavepoint(); }
  void rollbackToSavepoint() noexcept override { connection_->rollbackToSavepoint(); }

private:
  static Names columnsOf(const Recordset& rows, bool hidden) {
    Names names;
    if (hidden) names.emplace_back("lfd");
    for (std::size_t i = 0; i < rows.fieldCount(); ++i) names.emplace_back(rows.fieldName(i));
    return names;
  }

  std::shared_ptr<Connection> connection_;
  TextDriver driver_;
  relational::Spelling spelling_;
  relational::StatementCache texts_;
};

} // namespace

std::shared_ptr<Connection> withServerTexts(std::shared_ptr<Connection> connection) {
  const char* const file = std::getenv("QX_STATEMENTS");
  return file == nullptr ? std::move(connection) : std::make_shared<ServerTexts>(std::move(connection), file);
}

Connection& withoutServerTexts(Connection& connection) {
  auto* const texts = dynamic_cast<ServerTexts*>(&connection);
  return texts == nullptr ? connection : texts->beneath();
}

} // namespace qx
