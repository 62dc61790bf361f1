#include "support/ado_objects.h"

#include "adapters/sql/select_parts.h"
#include "adapters/sqlite/sqlite_driver.h"
#include "automation/automation_error.h"
#include "model/date.h"
#include "model/text.h"
#include "platform/database_error.h"

#include <sqlite3.h>

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <unordered_map>
#include <utility>

namespace qx {

using automation::Access;
using automation::Arguments;
using automation::AutomationError;
using automation::DispatchId;
using automation::ErrorNumber;
using automation::ObjectPointer;
using automation::Variant;
using automation::VariantKind;
using relational::StatementLife;

struct AdoDatabase::Inner {
  explicit Inner(sqlite3* handle, const std::string& file) : driver(handle, file) {}
  sqlite::SqliteDriver driver;
  std::vector<Report> errors;
};

/// An object whose members are functions.
class AdoObject : public automation::AutomationObject {
public:
  using Values = std::vector<Variant>;
  using Function = std::function<Variant(bool puts, Values& arguments)>;

  explicit AdoObject(AdoDatabase& database, std::string name = "Objekt")
      : database_(database), name_(std::move(name)) {}

  std::string_view className() const override { return name_; }
  std::optional<DispatchId> memberId(std::string_view name) override {
    const auto found = ids_.find(lowerCase(name));
    return found == ids_.end() ? std::nullopt : std::optional(found->second);
  }
  std::optional<DispatchId> parameterId(DispatchId, std::string_view) override { return std::nullopt; }
  Variant invoke(DispatchId member, Access access, Arguments& arguments) override {
    const auto index = static_cast<std::size_t>(member) - 1;
    if (index >= functions_.size()) throw AutomationError(ErrorNumber::NoSuchMember, "kein Mitglied");
    const bool puts = allows(access, Access::Put) || allows(access, Access::PutReference);
    return functions_[index](puts, arguments.positional);
  }

  AdoObject& with(std::string_view member, Function function) {
    functions_.push_back(std::move(function));
    ids_[lowerCase(member)] = static_cast<DispatchId>(functions_.size());
    return *this;
  }
  /// A property that is read only.
  AdoObject& giving(std::string_view member, std::function<Variant()> function) {
    return with(member, [function = std::move(function)](bool, Values&) { return function(); });
  }
  /// A whole number that is read and set.
  AdoObject& number(std::string_view member, std::int32_t& value, std::function<void()> check = {}) {
    return with(member, [&value, check = std::move(check)](bool puts, Values& arguments) -> Variant {
      if (!puts) return value;
      if (check) check();
      value = automation::int32Of(arguments.front());
      return {};
    });
  }

  [[noreturn]] static void refuse(std::uint32_t code, const char* text) {
    throw AutomationError(ErrorNumber::Failed, text, static_cast<std::int32_t>(code));
  }
  [[noreturn]] void report(AdoDatabase::Report report) {
    const auto number = report.number;
    const std::string text = report.text;
    errors().push_back(std::move(report));
    throw AutomationError(ErrorNumber::Failed, text, number);
  }
  /// Runs what reaches the provider.
  template <class Work>
  auto reach(Work&& work) {
    if (!database_.open) refuse(0x800A0E7D, "The connection is closed.");
    if (!database_.next.text.empty()) report(std::exchange(database_.next, {}));
    try {
      return work();
    } catch (const DatabaseError& error) {
      report({error.what(), "HY000", static_cast<std::int32_t>(0x80040E14), error.nativeCode()});
    }
  }

protected:
  sqlite::SqliteDriver& driver() { return database_.inner_->driver; }
  std::vector<AdoDatabase::Report>& errors() { return database_.inner_->errors; }
  AdoDatabase& database_;

private:
  std::string name_;
  std::unordered_map<std::string, DispatchId> ids_;
  std::vector<Function> functions_;
};

namespace {

constexpr std::int32_t adVariant = 12;

/// The type of a column by its declaration, with its precision and scale.
struct ColumnType {
  std::int32_t type = adVariant;
  std::int32_t precision = 0;
  std::int32_t scale = 0;
};

ColumnType typeOfDeclaration(std::string_view declared) {
  const std::string text = asciiLower(declared);
  const auto is = [&](std::string_view word) { return text.starts_with(word); };
  if (is("smallint")) return {2};
  if (is("integer") || is("bigint")) return {3};
  if (is("double")) return {5};
  if (is("decimal")) return {131, 19, 4};
  if (is("boolean")) return {11};
  if (is("timestamp")) return {135};
  if (is("text") || is("code")) return {202};
  return {};
}

bool isText(std::int32_t type) { return type == 202; }

/// The value as a column of the type keeps it. 0x800A0D5D: it is of another kind.
Value kept(const ColumnType& column, const Variant& given) {
  const Variant& value = given.value();
  if (value.kind() == VariantKind::Null) return Value::null();
  if (column.type == adVariant || isText(column.type)) {
    if (value.kind() == VariantKind::Text) return Value(value.as<std::string>());
    return Value(automation::textOf(value)); // numbers and dates as the country writes them
  }
  if (column.type == 135) {
    if (value.kind() == VariantKind::Date) return Value(timeStamp(value.as<DateTime>()));
    AdoObject::refuse(0x800A0D5D, "The date is of the wrong kind.");
  }
  if (value.kind() == VariantKind::Text) AdoObject::refuse(0x800A0D5D, "The number is of the wrong kind.");
  if (value.kind() == VariantKind::Boolean) {
    const bool truth = value.as<bool>();
    return column.type == 11 ? Value(truth) : Value(std::int64_t{truth ? -1 : 0});
  }
  return automation::valueOf(value);
}

/// The value as a field gives it.
Variant shownAs(const ColumnType& column, const Value& value) {
  if (value.isNull()) return Variant::null();
  switch (column.type) {
  case 2:
    return wholeAs<std::int16_t>(value).value_or(0);
  case 11:
    return value.truth().value_or(false);
  case 131: // as a decimal number arrives
    return value.number().value_or(0);
  case 135:
    return parseTimeStamp(value.text()).value_or(DateTime());
  default:
    return automation::variantOf(value);
  }
}

struct AdoParameter final : AdoObject {
  using AdoObject::AdoObject;
  Value value;
};

class AdoCommand final : public AdoObject {
public:
  explicit AdoCommand(AdoDatabase& database) : AdoObject(database, "Command") {
    with("ActiveConnection", [this](bool puts, Values& given) -> Variant {
      if (puts) connected_ = automation::objectOf(given.front()) == database_.connection();
      return database_.connection();
    });
    with("CommandText", [this](bool, Values& given) -> Variant {
      text = automation::textOf(given.front());
      return {};
    });
    number("CommandType", type_);
    number("CommandTimeout", timeout_);
    giving("Parameters", [this] { return ObjectPointer(parameters_); });
    with("CreateParameter", [this](bool, Values& given) -> Variant { return parameter(given); });
    with("Execute", [this](bool, Values& given) -> Variant {
      return reach([&]() -> Variant {
        const auto statement = prepared(text);
        const std::int64_t changed = statement->run();
        if (Variant* const place = given.at(0).variable()) *place = static_cast<std::int32_t>(changed);
        return {};
      });
    });
    parameters_->with("Append", [this](bool, Values& given) -> Variant {
      const auto given_ = std::dynamic_pointer_cast<AdoParameter>(automation::objectOf(given.front()));
      values_.push_back(given_->value);
      return {};
    });
  }

  /// The statement, or another text with the same parameters.
  std::unique_ptr<relational::Statement> prepared(const std::string& sqlText) {
    if (!connected_ || type_ != 1 || timeout_ != database_.timeout)
      throw std::logic_error("the command was not set up");
    database_.statements.push_back(text);
    auto statement = driver().prepare(sqlText, StatementLife::Once);
    if (statement->parameterCount() != values_.size())
      report({"No value given for one or more required parameters.", "07002",
              static_cast<std::int32_t>(0x80040E10), 0});
    statement->bindAll(values_);
    return statement;
  }
  std::string text;

private:
  Variant parameter(Values& given) {
    auto made = std::make_shared<AdoParameter>(database_, "Parameter");
    const std::int32_t type = automation::int32Of(given.at(1));
    const Variant& value = given.at(4).value();
    made->value = automation::valueOf(value);
    const bool textual = type == 202 || type == 203;
    const bool fits = value.kind() == VariantKind::Null || textual == (value.kind() == VariantKind::Text);
    const auto length = characterCount(made->value.textView());
    if (!fits || (textual && automation::int32Of(given.at(3)) < static_cast<std::int32_t>(length)) ||
        (type == 202 && length > 4000))
      refuse(0x800A0D5D, "The parameter is of the wrong kind.");
    return ObjectPointer(std::move(made));
  }

  bool connected_ = false;
  std::int32_t type_ = 8;
  std::int32_t timeout_ = 30;
  std::vector<Value> values_;
  std::shared_ptr<AdoObject> parameters_ = std::make_shared<AdoObject>(database_, "Parameters");
};

class AdoRecordsetObject final : public AdoObject {
public:
  explicit AdoRecordsetObject(AdoDatabase& database) : AdoObject(database, "Recordset") {
    number("CursorLocation", location_, [this] {
      if (open_) refuse(0x800A0E79, "The record set is open.");
    });
    with("Open", [this](bool, Values& given) -> Variant { return opened(given); });
    with("Close", [this](bool, Values&) -> Variant {
      if (!open_) refuse(0x800A0E78, "The record set is closed.");
      if (pending_) refuse(0x800A0C93, "Columns are not written yet.");
      open_ = false;
      return {};
    });
    giving("Fields", [this] { return ObjectPointer(fields_); });
    giving("RecordCount", [this]() -> Variant { return static_cast<std::int32_t>(rows_.size()); });
    giving("EOF", [this]() -> Variant { return at_ >= rows_.size(); });
    giving("Bookmark", [this]() -> Variant { return static_cast<double>(at_ + 1); });
    with("AbsolutePosition", [this](bool, Values& given) -> Variant {
      return move(static_cast<std::size_t>(automation::int32Of(given.front()) - 1));
    });
    with("MoveFirst", [this](bool, Values&) { return move(0); });
    with("MoveNext", [this](bool, Values&) { return move(at_ + 1); });
    with("Move", [this](bool, Values& given) {
      return move(at_ + static_cast<std::size_t>(automation::int32Of(given.front())));
    });
    with("AddNew", [this](bool, Values&) -> Variant {
      if (command_ && (lock_ == 1 || table_.empty())) refuse(0x800A0CB3, "The record set cannot be changed.");
      if (pending_) update();
      pending_ = adding_ = true;
      row_ = Row{0, {}, std::vector<Value>(columns_.size())};
      return {};
    });
    with("Update", [this](bool, Values&) -> Variant { return update(); });
    with("CancelUpdate", [this](bool, Values&) -> Variant {
      forget();
      return {};
    });
    with("Requery", [this](bool, Values&) -> Variant { return reach([&] { return read(); }); });
    with("Resync", [this](bool, Values& given) -> Variant {
      if (automation::int32Of(given.at(0)) != 1 || automation::int32Of(given.at(1)) != 2)
        throw std::logic_error("more than the current row is read");
      return reach([&] { return readRow(); });
    });
    fields_->giving("Count", [this]() -> Variant { return static_cast<std::int32_t>(columns_.size()); });
    fields_->with("Item", [this](bool, Values& given) -> Variant {
      const Variant& index = given.front().value();
      for (std::size_t i = 0; i < columns_.size(); ++i)
        if (index.kind() == VariantKind::Text ? equalCodes(columns_[i].name, index.as<std::string>())
                                              : static_cast<std::size_t>(automation::int32Of(index)) == i)
          return columns_[i].field;
      refuse(0x800A0CC1, "The field does not exist.");
    });
    fields_->with("Append", [this](bool, Values& given) -> Variant {
      addColumn(automation::textOf(given.at(0)), {automation::int32Of(given.at(1))}, true);
      return {};
    });
  }

  /// The rows of a statement without parameters, as the connection lists its tables.
  static ObjectPointer listed(AdoDatabase& database, std::string_view text) {
    auto set = std::make_shared<AdoRecordsetObject>(database);
    const auto statement = set->driver().prepare(text, StatementLife::Once);
    for (std::size_t i = 0; i < statement->columnCount(); ++i)
      set->addColumn(std::string(statement->columnName(i)), {}, false);
    while (statement->step()) set->rows_.push_back(set->rowOf(*statement, 0));
    set->open_ = true;
    return set;
  }

private:
  struct Row {
    std::int64_t id = 0;
    Value key; ///< the table's own
    std::vector<Value> values;
  };
  struct Column {
    std::string name;
    ColumnType type;
    bool stored = false;
    ObjectPointer field;
  };

  void addColumn(std::string name, ColumnType type, bool stored) {
    const std::size_t index = columns_.size();
    auto field = std::make_shared<AdoObject>(database_, "Field");
    field->giving("Name", [this, index]() -> Variant { return columns_[index].name; });
    field->giving("Type", [type]() -> Variant { return type.type; });
    field->giving("Precision", [type]() -> Variant { return type.precision; });
    field->giving("NumericScale", [type]() -> Variant { return type.scale; });
    field->with("Value", [this, index](bool puts, Values& given) -> Variant {
      return puts ? set(index, given.front()) : shownAs(columns_[index].type, current().values[index]);
    });
    columns_.push_back({std::move(name), type, stored, std::move(field)});
  }

  Variant opened(Values& given) {
    if (!given.empty()) {
      command_ = std::dynamic_pointer_cast<AdoCommand>(automation::objectOf(given.at(0)));
      cursor_ = automation::int32Of(given.at(2));
      lock_ = automation::int32Of(given.at(3));
      database_.opened.push_back(std::to_string(location_) + "," + std::to_string(cursor_) + "," +
                                 std::to_string(lock_));
      if (const auto parts = relational::splitSelect(command_->text); parts && !parts->aggregate) {
        table_ = std::string(parts->table);
        list_ = std::string(parts->list);
        key_ = driver().keyOf(table_);
      }
      reach([&] { return read(); });
    }
    open_ = true;
    return {};
  }

  std::string head() const {
    return "SELECT rowid, " + (key_.text.empty() ? std::string("NULL") : "\"" + key_.text + "\"") + ", ";
  }

  std::map<std::string, std::string> declarations() {
    std::map<std::string, std::string> found;
    const auto info = driver().prepare("SELECT name, type FROM pragma_table_info(?)", StatementLife::Once);
    const Value table(table_);
    info->bind(0, table);
    while (info->step())
      found[lowerCase(info->column(0, relational::ColumnKind::Plain).text())] =
          info->column(1, relational::ColumnKind::Plain).text();
    return found;
  }

  Row rowOf(relational::Statement& statement, std::size_t hidden) {
    Row row;
    if (hidden != 0) {
      row.id = statement.column(0, relational::ColumnKind::Plain).integer().value_or(0);
      row.key = statement.column(1, relational::ColumnKind::Plain);
    }
    for (std::size_t i = hidden; i < statement.columnCount(); ++i)
      row.values.push_back(statement.column(i, statement.columnKind(i)));
    return row;
  }

  Variant read() {
    forget();
    const std::size_t hidden = table_.empty() ? 0 : 2;
    const auto statement =
        command_->prepared(hidden == 0 ? command_->text : head() + command_->text.substr(7));
    columns_.clear();
    const auto declared = table_.empty() ? std::map<std::string, std::string>() : declarations();
    for (std::size_t i = hidden; i < statement->columnCount(); ++i) {
      const std::string name(statement->columnName(i));
      const auto found = declared.find(lowerCase(name));
      const bool stored = found != declared.end();
      addColumn(name, stored ? typeOfDeclaration(found->second) : ColumnType{}, stored);
    }
    rows_.clear();
    while (statement->step()) rows_.push_back(rowOf(*statement, hidden));
    at_ = 0;
    return {};
  }

  Variant readRow() {
    const Row& old = rows_.at(at_);
    const auto statement = driver().prepare(head() + list_ + " FROM \"" + table_ + "\" WHERE rowid = ?" +
                                                (key_.text.empty() ? "" : " AND \"" + key_.text + "\" = ?"),
                                            StatementLife::Once);
    const Value id(old.id);
    statement->bind(0, id);
    if (!key_.text.empty()) statement->bind(1, old.key);
    if (!statement->step())
      report({"Key value for this row was changed or deleted at the data store.", "",
              static_cast<std::int32_t>(0x80040E23), 0});
    rows_[at_] = rowOf(*statement, 2);
    return {};
  }

  Row& current() {
    if (!open_ && !command_) refuse(0x800A0E78, "The record set is closed.");
    if (pending_) return row_;
    if (at_ >= rows_.size()) refuse(0x800A0BCD, "There is no current record.");
    return rows_[at_];
  }

  Variant set(std::size_t index, const Variant& given) {
    const Column& column = columns_[index];
    if (!column.stored || (command_ && lock_ == 1)) refuse(0x80040E21, "The field cannot be changed.");
    const Row& row = current();
    if (!pending_) row_ = Row(row);
    pending_ = true;
    row_.values[index] = kept(column.type, given);
    database_.columns.push_back(column.name);
    if (std::ranges::find(set_, index) == set_.end()) set_.push_back(index);
    return {};
  }

  void forget() {
    pending_ = adding_ = false;
    set_.clear();
  }

  Variant move(std::size_t place) {
    if (pending_) update();
    at_ = std::min(place, rows_.size());
    return {};
  }

  Variant update() {
    if (!pending_) return {};
    if (command_) reach([&] { adding_ ? insert() : change(); });
    if (adding_) {
      at_ = rows_.size();
      rows_.push_back(row_);
    } else {
      rows_[at_] = row_;
    }
    forget();
    return {};
  }

  void insert() {
    std::string names;
    std::string places;
    for (const std::size_t i : set_) {
      names += (names.empty() ? "\"" : ", \"") + columns_[i].name + "\"";
      places += places.empty() ? "?" : ", ?";
    }
    const std::string values = set_.empty() ? " DEFAULT VALUES" : " (" + names + ") VALUES (" + places + ")";
    const auto statement = driver().prepare("INSERT INTO \"" + table_ + "\"" + values, StatementLife::Once);
    for (std::size_t i = 0; i < set_.size(); ++i) statement->bind(i, row_.values[set_[i]]);
    const auto id = driver().insertRow(*statement);
    if (!id) report({"Errors occurred.", "", static_cast<std::int32_t>(0x80040E21), 0});
    row_.id = *id;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      if (equalCodes(columns_[i].name, key_.text)) row_.key = row_.values[i];
      if (!key_.identity.empty() && equalCodes(columns_[i].name, key_.identity))
        row_.values[i] = Value(row_.id);
    }
  }

  /// Only while the row and the columns that are set are as they were read.
  void change() {
    const Row& old = rows_.at(at_);
    std::string assignments;
    std::string condition;
    for (const std::size_t i : set_) {
      assignments += (assignments.empty() ? "\"" : ", \"") + columns_[i].name + "\" = ?";
      condition += " AND \"" + columns_[i].name + "\" IS ?";
    }
    const auto statement = driver().prepare(
        "UPDATE \"" + table_ + "\" SET " + assignments + " WHERE rowid = ?" + condition, StatementLife::Once);
    std::size_t next = 0;
    for (const std::size_t i : set_) statement->bind(next++, row_.values[i]);
    const Value id(old.id);
    statement->bind(next++, id);
    for (const std::size_t i : set_) statement->bind(next++, old.values[i]);
    if (statement->run() == 0)
      report({"Row cannot be located for updating.", "", static_cast<std::int32_t>(0x80040E38), 32});
  }

  std::int32_t location_ = 2;
  std::int32_t cursor_ = 0;
  std::int32_t lock_ = 1;
  bool open_ = false;
  bool pending_ = false;
  bool adding_ = false;
  std::shared_ptr<AdoCommand> command_;
  std::string table_; ///< whose rows can be changed
  std::string list_;
  relational::TableKey key_;
  std::vector<Column> columns_;
  std::vector<Row> rows_;
  std::size_t at_ = 0;
  Row row_; ///< with the columns that are pending
  std::vector<std::size_t> set_;
  std::shared_ptr<AdoObject> fields_ = std::make_shared<AdoObject>(database_, "Fields");
};

class AdoConnectionObject final : public AdoObject {
public:
  explicit AdoConnectionObject(AdoDatabase& database) : AdoObject(database, "Connection") {
    giving("ConnectionString", [this]() -> Variant { return database_.connectionString; });
    giving("State", [this]() -> Variant { return std::int32_t{database_.open ? 1 : 0}; });
    number("CommandTimeout", database_.timeout);
    for (const char* name : {"BeginTrans", "CommitTrans", "RollbackTrans"})
      giving(name, [this]() -> Variant { return std::int32_t{++database_.begun}; });
    giving("Errors", [this] { return ObjectPointer(errors_); });
    giving("Properties", [this] { return ObjectPointer(properties_); });
    with("OpenSchema", [this](bool, Values& given) -> Variant {
      if (automation::int32Of(given.front()) != 20) throw std::logic_error("another list is asked for");
      return AdoRecordsetObject::listed(
          database_, "SELECT name AS TABLE_NAME, CASE WHEN name LIKE 'sqlite\\_%' ESCAPE '\\' THEN 'SYSTEM "
                     "TABLE' ELSE upper(type) END AS TABLE_TYPE FROM sqlite_master WHERE type IN "
                     "('table', 'view')");
    });
    errors_->giving("Count", [this]() -> Variant { return static_cast<std::int32_t>(errors().size()); });
    errors_->giving("Clear", [this]() -> Variant {
      errors().clear();
      return {};
    });
    errors_->with("Item", [this](bool, Values& given) -> Variant {
      const auto& report = errors().at(static_cast<std::size_t>(automation::int32Of(given.front())));
      const auto error = std::make_shared<AdoObject>(database_, "Error");
      error->giving("Description", [text = report.text]() -> Variant { return text; });
      error->giving("SQLState", [text = report.state]() -> Variant { return text; });
      error->giving("Number", [number = report.number]() -> Variant { return number; });
      error->giving("NativeError", [number = report.native]() -> Variant { return number; });
      return ObjectPointer(error);
    });
    properties_->with("Item", [this](bool, Values& given) -> Variant {
      if (database_.product.empty() || automation::textOf(given.front()) != "DBMS Name")
        refuse(0x800A0CC1, "The property does not exist.");
      const auto property = std::make_shared<AdoObject>(database_, "Property");
      property->giving("Value", [this]() -> Variant { return database_.product; });
      return ObjectPointer(property);
    });
  }

private:
  std::shared_ptr<AdoObject> errors_ = std::make_shared<AdoObject>(database_, "Errors");
  std::shared_ptr<AdoObject> properties_ = std::make_shared<AdoObject>(database_, "Properties");
};

sqlite3* openedFile(const std::string& file) {
  sqlite3* handle = nullptr;
  if (sqlite3_open_v2(file.c_str(), &handle, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK)
    throw std::runtime_error(file + ": " + sqlite3_errmsg(handle));
  sqlite3_extended_result_codes(handle, 1);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
  // Each statement is a transaction here; a test need not survive a loss of power.
  sqlite3_exec(handle, "PRAGMA synchronous = OFF", nullptr, nullptr, nullptr);
  return handle;
}

} // namespace

AdoDatabase::AdoDatabase(const std::string& file)
    : inner_(std::make_unique<Inner>(openedFile(file), file)),
      connection_(std::make_shared<AdoConnectionObject>(*this)) {}

AdoDatabase::~AdoDatabase() = default;

ObjectPointer AdoDatabase::create(std::string_view progId) {
  if (progId == "ADODB.Command") return std::make_shared<AdoCommand>(*this);
  if (progId == "ADODB.Recordset") return std::make_shared<AdoRecordsetObject>(*this);
  throw AutomationError(ErrorNumber::CannotCreate,
                        "Die Komponente '" + std::string(progId) + "' kann nicht erzeugt werden.");
}

} // namespace qx
