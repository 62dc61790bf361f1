#include "adapters/odbc/odbc_driver.h"

#include "adapters/odbc/odbc_call.h"
#include "adapters/odbc/odbc_statement.h"
#include "adapters/odbc/unicode.h"
#include "model/text.h"
#include "platform/database_error.h"

#include <array>
#include <chrono>
#include <exception>
#include <stdexcept>
#include <utility>

namespace qx::odbc {
namespace {

constexpr std::chrono::milliseconds defaultBusyLimit{60000};

std::string productOf(void* connection) {
  constexpr std::size_t longest = 128;
  std::u16string product(longest, u'\0');
  SQLSMALLINT bytes = 0;
  SQLGetInfoW(connection, SQL_DBMS_NAME, product.data(), longest * sizeof(char16_t), &bytes);
  product.resize(std::min(longest, static_cast<std::size_t>(bytes) / sizeof(char16_t)));
  return toUtf8(product);
}

/// The string with the settings that the adapter needs.
ConnectionString completed(ConnectionString text, const Server& server) {
  for (const auto& [keyword, value] : server.settings) {
    // Additions of the user's own stay.
    if (keyword == "Pqopt" && text.has(keyword)) continue;
    text.set(keyword, value);
  }
  return text;
}

} // namespace

OdbcDriver::OdbcDriver(ConnectionString connectionString)
    : connectionString_(std::move(connectionString)), name_("odbc:" + connectionString_.displayed()),
      environment_(SQL_HANDLE_ENV, nullptr) {
  SQLSetEnvAttr(environment_.get(), SQL_ATTR_ODBC_VERSION, attributeNumber(SQL_OV_ODBC3), 0);
  connect();
}

OdbcDriver::~OdbcDriver() { disconnect(); }

void OdbcDriver::connect() {
  const Server* expected = guessServer(connectionString_.value("Driver"));
  open(expected == nullptr ? connectionString_ : completed(connectionString_, *expected));
  const std::string product = productOf(connection_.get());
  server_ = findServer(product);
  if (server_ == nullptr) {
    disconnect();
    throw StoreError(
        name_ + ": the database is of the kind \"" + product + "\", which this program does not know", 0);
  }
  // The name of a data source does not tell the product, so the settings come with a second connection.
  if (expected != server_) {
    disconnect();
    open(completed(connectionString_, *server_));
  }
  SQLUINTEGER extensions = 0;
  SQLGetInfoW(connection_.get(), SQL_GETDATA_EXTENSIONS, &extensions, sizeof extensions, nullptr);
  readsParts_ = (extensions & SQL_GD_BLOCK) != 0 && (extensions & SQL_GD_BOUND) != 0;
  SQLUSMALLINT describes = SQL_FALSE;
  SQLGetFunctions(connection_.get(), SQL_API_SQLDESCRIBEPARAM, &describes);
  describesParameters_ = describes == SQL_TRUE;
  rowKeys_.clear();
  greet();
}

void OdbcDriver::open(const ConnectionString& connectionString) {
  connection_ = Handle(SQL_HANDLE_DBC, environment_.get());
  constexpr std::size_t seconds = 15;
  // The driver takes no second limit beside that of its own option.
  if (connectionString.value("Pqopt").find("connect_timeout") == std::string_view::npos)
    SQLSetConnectAttrW(connection_.get(), SQL_ATTR_LOGIN_TIMEOUT, attributeNumber(seconds), 0);
  std::u16string text = toUtf16(connectionString.text());
  const SQLRETURN result =
      SQLDriverConnectW(connection_.get(), nullptr, wideText(text), static_cast<SQLSMALLINT>(text.size()),
                        nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
  if (!SQL_SUCCEEDED(result)) raiseConnectFailure(failureOf(SQL_HANDLE_DBC, connection_.get()), name_);
  disconnected_ = false;
  ++session_;
}

void OdbcDriver::disconnect() noexcept {
  if (disconnected_) return;
  disconnected_ = true;
  // Frees the statements too, without a word to the server for each.
  SQLDisconnect(connection_.get());
  ++session_;
}

void OdbcDriver::greet() {
  if (!server_->start.empty()) control(server_->start);
  const std::string found = answer(server_->greeting).value_or("unknown");
  if (found == server_->encoding) return;
  disconnect();
  throw StoreError(name_ + ": the texts of the database are stored as " + found + "; only databases in " +
                       std::string(server_->encoding) + " can be used. Create a database with that encoding",
                   0);
}

std::unique_ptr<relational::Statement> OdbcDriver::prepare(std::string_view text,
                                                           relational::StatementLife /*life*/) {
  requireConnection();
  return std::make_unique<OdbcStatement>(*this, text);
}

/// The first value of the first row; null without a row.
std::optional<std::string> OdbcDriver::answer(std::string_view query) {
  OdbcStatement statement(*this, query);
  if (!statement.step()) return std::nullopt;
  return statement.column(0, relational::ColumnKind::Plain).text();
}

void OdbcDriver::readRowKeys() {
  OdbcStatement statement(*this, server_->keyedTables);
  while (statement.step())
    rowKeys_[asciiLower(statement.column(0, relational::ColumnKind::Plain).text())] =
        statement.column(1, relational::ColumnKind::Plain).text();
}

relational::TableKey OdbcDriver::keyOf(std::string_view table) {
  const std::string name = asciiLower(table);
  if (!rowKeys_.contains(name)) readRowKeys();
  const auto found = rowKeys_.find(name);
  relational::TableKey key;
  if (found == rowKeys_.end()) return key;
  key.row = found->second;
  // A column of the catalogue's own that numbers the rows.
  if (key.row != server_->dialect->rowKey) key.identity = key.row;
  return key;
}

std::optional<std::int64_t> OdbcDriver::insertRow(relational::Statement& insert) {
  const relational::StatementUse use(insert);
  if (!insert.step()) return std::nullopt;
  return insert.column(0, relational::ColumnKind::Plain).integer();
}

std::vector<std::string> OdbcDriver::names(std::string_view query) {
  OdbcStatement statement(*this, query);
  std::vector<std::string> names;
  while (statement.step()) names.push_back(statement.column(0, relational::ColumnKind::Plain).text());
  return names;
}

std::vector<std::string> OdbcDriver::tableNames() { return names(server_->tables); }

std::vector<std::string> OdbcDriver::triggeredTables() {
  std::vector<std::string> tables = names(server_->triggeredTables);
  for (std::string& table : tables) table = asciiLower(table);
  return tables;
}

short OdbcDriver::textType(std::size_t length) const {
  const std::size_t longest = server_->longestShortText;
  return longest > 0 && length > longest ? SQL_WLONGVARCHAR : SQL_WVARCHAR;
}

void OdbcDriver::requireConnection() {
  requireUnit();
  if (!disconnected_) return;
  if (scope_ != Scope::None) throw WorkLostError("the connection to the database was lost", 0);
  connect();
}

void OdbcDriver::requireUnit() const {
  if (!lost_ || scope_ != Scope::Unit) return;
  if (conflict_) throw ConflictError(conflict_->message, conflict_->nativeCode, conflict_->sqlState);
  throw WorkLostError("the database rolled back the unit of work", 0);
}

short OdbcDriver::call(void* statement, std::string_view text, Effect effect,
                       const std::function<short()>& run) {
  requireUnit();
  if (scope_ != Scope::None && effect != Effect::Stays) prepareForFailure();
  const auto start = std::chrono::steady_clock::now();
  while (true) {
    interrupter_.begin(statement);
    const short result = run();
    interrupter_.end();
    if (SQL_SUCCEEDED(result) || result == SQL_NO_DATA) {
      if (effect == Effect::Writes && !levels_.empty()) levels_.back().unsafe = levels_.back().wrote = true;
      return result;
    }
    const Failure failure = failureOfStatement(statement);
    if (staked_ && scope_ == Scope::Unit &&
        (failure.kind() == FailureKind::Busy || failure.kind() == FailureKind::Statement)) {
      lost_ = true;
      throw WorkLostError(failure.message + " (" + std::string(failure.sqlState) + ")", 0);
    }
    if (failure.kind() == FailureKind::Busy) {
      undoStatement();
      const auto waited =
          std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
      if (!lost_ && (wait_ != nullptr ? wait_->goOn(waited) : waited < defaultBusyLimit)) continue;
    }
    fail(failure, text);
  }
}

void OdbcDriver::fail(const Failure& failure, std::string_view text) {
  if (failure.lostConnection()) disconnect();
  if (failure.kind() == FailureKind::Statement)
    undoStatement();
  else if (failure.kind() != FailureKind::Busy && scope_ != Scope::None)
    loseUnit(failure);
  raiseFailure(failure, name_, text, interrupter_.requested());
}

/// One savepoint per write that another statement follows.
void OdbcDriver::prepareForFailure() {
  Level& level = levels_.back();
  if (!level.unsafe || staked_) return;
  level.unsafe = false;
  const std::string step = std::string(server_->set) + "step";
  const bool releases = level.step && !server_->release.empty();
  control(releases ? std::string(server_->release) + "step;" + step : step);
  level.step = true;
}

void OdbcDriver::undoStatement() noexcept {
  if (scope_ == Scope::None || lost_) return;
  // What was written since the last savepoint would be lost without a word.
  lost_ = levels_.back().unsafe;
  if (lost_) return;
  try {
    control(std::string(server_->undo) + (levels_.back().step ? "step" : partName()));
  } catch (const std::exception&) {
    // Without its savepoint the unit may be half written: it is lost as a whole.
    lost_ = true;
  }
}

/// A driver may report the end of the server as an error of no particular kind.
Failure OdbcDriver::failureOfStatement(void* statement) const {
  Failure failure = failureOf(SQL_HANDLE_STMT, statement);
  if (server_->states != nullptr)
    failure.sqlState = relational::tellingState(*server_->states, failure.nativeCode, failure.sqlState);
  SQLUINTEGER dead = SQL_CD_FALSE;
  if (failure.kind() == FailureKind::Statement &&
      SQL_SUCCEEDED(
          SQLGetConnectAttrW(connection_.get(), SQL_ATTR_CONNECTION_DEAD, &dead, sizeof dead, nullptr)) &&
      dead == SQL_CD_TRUE)
    failure.sqlState = "08S01";
  return failure;
}

/// Without the savepoints and waits of other statements.
void OdbcDriver::control(std::string_view text) {
  Handle statement(SQL_HANDLE_STMT, connection_.get());
  std::u16string content = toUtf16(text);
  const SQLRETURN result =
      SQLExecDirectW(statement.get(), wideText(content), static_cast<SQLINTEGER>(content.size()));
  if (SQL_SUCCEEDED(result) || result == SQL_NO_DATA) return;
  const Failure failure = failureOfStatement(statement.get());
  if (failure.lostConnection()) {
    disconnect();
    // The end of the connection has freed it.
    statement.forget();
  }
  if (scope_ != Scope::None) loseUnit(failure);
  raiseFailure(failure, name_, text, false);
}

void OdbcDriver::loseUnit(const Failure& failure) {
  if (!lost_ && failure.kind() == FailureKind::Conflict) conflict_ = failure;
  lost_ = true;
}

void OdbcDriver::begin(BusyWait* wait) {
  requireUnit();
  if (scope_ != Scope::None) throw std::logic_error("a unit of work is already open");
  requireConnection();
  try {
    control(server_->begin);
  } catch (const StoreError&) {
    // A connection that was lost between two units costs nobody anything.
    if (!disconnected_) throw;
    connect();
    control(server_->begin);
  }
  scope_ = Scope::Unit;
  wait_ = wait;
  levels_ = {Level{.step = true}};
}

void OdbcDriver::commit() {
  if (scope_ != Scope::Unit) return;
  requireUnit();
  try {
    control(server_->commit);
  } catch (const ConnectionLostError& lost) {
    throw CommitUnknownError(
        std::string(lost.what()) +
            ". It is not known whether its last changes were written: look at them first",
        lost.nativeCode(), lost.sqlState());
  }
  scope_ = Scope::None;
  levels_.clear();
  wait_ = nullptr;
}

void OdbcDriver::rollback() noexcept {
  if (scope_ == Scope::None) return;
  try {
    if (!disconnected_) control(server_->rollback);
  } catch (const std::exception&) {
    // A session in an unknown state is not used again; its end rolls the unit back.
    disconnect();
  }
  scope_ = Scope::None;
  lost_ = false;
  conflict_.reset();
  levels_.clear();
  wait_ = nullptr;
}

void OdbcDriver::beginReading() {
  if (scope_ != Scope::None) return;
  requireConnection();
  control(server_->beginReading);
  scope_ = Scope::Reading;
  levels_ = {Level{.step = true}};
}

void OdbcDriver::endReading() noexcept {
  if (scope_ == Scope::Reading) rollback();
}

void OdbcDriver::setSavepoint() {
  if (scope_ != Scope::Unit) return;
  requireUnit();
  levels_.push_back({});
  try {
    control(std::string(server_->set) + partName());
  } catch (...) {
    levels_.pop_back();
    throw;
  }
}

void OdbcDriver::releaseSavepoint() {
  if (scope_ != Scope::Unit) return;
  requireUnit();
  if (!server_->release.empty()) control(std::string(server_->release) + partName());
  const bool wrote = levels_.back().wrote;
  levels_.pop_back();
  levels_.back().unsafe = levels_.back().unsafe || wrote;
  levels_.back().wrote = levels_.back().wrote || wrote;
}

void OdbcDriver::rollbackToSavepoint() noexcept {
  if (scope_ != Scope::Unit) return;
  if (!lost_) {
    try {
      const std::string part = partName();
      const std::string undo = std::string(server_->undo) + part;
      control(server_->release.empty() ? undo : undo + ";" + std::string(server_->release) + part);
    } catch (const std::exception&) {
      lost_ = true;
    }
  }
  levels_.pop_back();
}

} // namespace qx::odbc
