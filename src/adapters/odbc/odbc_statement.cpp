#include "adapters/odbc/odbc_statement.h"

#include "adapters/odbc/odbc_call.h"
#include "adapters/odbc/unicode.h"
#include "model/text.h"
#include "platform/database_error.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <type_traits>

namespace qx::odbc {
namespace {

using relational::ColumnKind;

static_assert(sizeof(SQLLEN) == sizeof(std::ptrdiff_t) && sizeof(SQLULEN) == sizeof(std::size_t));

constexpr std::size_t blockBytes = 65536;
constexpr std::size_t mostRows = 64;
/// Texts up to this length come with their block, longer ones are fetched one by one.
constexpr std::size_t shortText = 64;

bool beginsWith(std::string_view text, std::string_view word) {
  text = trimWhitespace(text);
  return text.size() > word.size() && equalCodes(text.substr(0, word.size()), word);
}

/// The whole numbers that a type holds; null for other types.
struct WholeRange {
  std::int64_t least;
  std::int64_t most;
};
template <class Number>
constexpr WholeRange rangeOf() {
  return {std::numeric_limits<Number>::min(), std::numeric_limits<Number>::max()};
}
std::optional<WholeRange> wholeRange(short type) {
  switch (type) {
  case SQL_SMALLINT:
    return rangeOf<std::int16_t>();
  case SQL_INTEGER:
    return rangeOf<std::int32_t>();
  case SQL_BIGINT:
    return rangeOf<std::int64_t>();
  default:
    return std::nullopt;
  }
}

bool isNumber(short type) {
  switch (type) {
  case SQL_NUMERIC:
  case SQL_DECIMAL:
  case SQL_REAL:
  case SQL_FLOAT:
  case SQL_DOUBLE:
    return true;
  default:
    return wholeRange(type).has_value();
  }
}

/// The shortest digits that give the same number again.
std::string exactDigits(double number) {
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  return {digits.data(), end.ptr};
}

std::string plainText(const Value& value) {
  return value.kind() == ValueKind::Double ? exactDigits(value.number().value_or(0)) : value.text();
}

/// A value that is compared with whole numbers and is none of them equals none.
bool fits(const WholeRange& range, const Value& value) {
  if (const auto whole = value.integer()) return *whole >= range.least && *whole <= range.most;
  const auto number = value.number();
  return number && std::trunc(*number) == *number && *number >= static_cast<double>(range.least) &&
         *number <= static_cast<double>(range.most);
}

Value digitsValue(std::string_view digits, ColumnKind kind) {
  Value text(digits);
  switch (kind) {
  case ColumnKind::Boolean:
    return Value(text.number().value_or(0) != 0);
  case ColumnKind::Currency:
    if (const auto amount = Money::parse(digits)) return Value(*amount);
    break;
  case ColumnKind::Double:
    break;
  case ColumnKind::Plain:
    if (const auto whole = text.integer()) return Value(*whole);
    break;
  }
  if (const auto number = text.number()) return Value(*number);
  return text;
}

} // namespace

OdbcStatement::OdbcStatement(OdbcDriver& driver, std::string_view text)
    : driver_(driver), text_(text), effect_(beginsWith(text, "select") ? Effect::Reads : Effect::Writes),
      compares_(effect_ == Effect::Reads || beginsWith(text, "delete")) {
  try {
    prepare();
  } catch (...) {
    forgetIfFreed();
    throw;
  }
}

OdbcStatement::~OdbcStatement() { forgetIfFreed(); }

/// The end of a connection has freed its statements.
void OdbcStatement::forgetIfFreed() {
  if (session_ != driver_.session()) statement_.forget();
}

short OdbcStatement::call(Effect effect, const std::function<short()>& run) {
  return driver_.call(statement_.get(), text_, effect, run);
}

void OdbcStatement::prepare() {
  forgetIfFreed();
  statement_ = Handle(SQL_HANDLE_STMT, driver_.connection());
  session_ = driver_.session();
  columns_.clear();
  described_ = open_ = false;
  // Braces are data, not escapes of ODBC.
  SQLSetStmtAttrW(statement_.get(), SQL_ATTR_NOSCAN, attributeNumber(SQL_NOSCAN_ON), 0);
  std::u16string wide = toUtf16(text_);
  call(Effect::Reads,
       [&] { return SQLPrepareW(statement_.get(), wideText(wide), static_cast<SQLINTEGER>(wide.size())); });
  SQLSMALLINT count = 0;
  call(Effect::Stays, [&] { return SQLNumParams(statement_.get(), &count); });
  describeParameters(static_cast<std::size_t>(count));
}

void OdbcStatement::describeParameters(std::size_t count) {
  parameters_.resize(count);
  if (!driver_.describesParameters()) return;
  for (std::size_t i = 0; i < count; ++i) {
    SQLULEN size = 0;
    SQLSMALLINT digits = 0;
    SQLSMALLINT nullable = 0;
    call(Effect::Reads, [&] {
      return SQLDescribeParam(statement_.get(), static_cast<SQLUSMALLINT>(i + 1), &parameters_[i].type, &size,
                              &digits, &nullable);
    });
  }
}

void OdbcStatement::describeColumns() {
  if (described_) return;
  SQLSMALLINT count = 0;
  call(Effect::Reads, [&] { return SQLNumResultCols(statement_.get(), &count); });
  columns_.resize(static_cast<std::size_t>(count));
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    constexpr std::size_t longest = 256;
    std::u16string name(longest, u'\0');
    SQLSMALLINT length = 0;
    SQLSMALLINT type = 0;
    SQLULEN size = 0;
    SQLSMALLINT digits = 0;
    SQLSMALLINT nullable = 0;
    call(Effect::Reads, [&] {
      return SQLDescribeColW(statement_.get(), static_cast<SQLUSMALLINT>(i + 1), wideText(name), longest,
                             &length, &type, &size, &digits, &nullable);
    });
    Column& column = columns_[i];
    name.resize(std::min<std::size_t>(static_cast<std::size_t>(length), longest - 1));
    column.name = toUtf8(name);
    column.kind = ColumnKind::Plain;
    switch (type) {
    case SQL_BIT:
      column.kind = ColumnKind::Boolean;
      [[fallthrough]];
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
    case SQL_BIGINT:
      column.transfer = Transfer::Integer;
      column.width = sizeof(std::int64_t);
      break;
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
      column.kind = ColumnKind::Double;
      column.transfer = Transfer::Double;
      column.width = sizeof(double);
      break;
    case SQL_NUMERIC:
    case SQL_DECIMAL: {
      constexpr std::size_t mostDigits = 64;
      constexpr SQLSMALLINT currencyDigits = 4;
      if (size == 1 && digits == 0) column.kind = ColumnKind::Boolean;
      if (digits == currencyDigits) column.kind = ColumnKind::Currency;
      column.transfer = Transfer::Digits;
      column.width = mostDigits;
      break;
    }
    default:
      column.transfer = Transfer::Text;
      column.width = (shortText + 1) * sizeof(char16_t);
      break;
    }
  }
  bindColumns();
  described_ = true;
}

void OdbcStatement::bindColumns() {
  std::size_t rowBytes = 1;
  for (const Column& column : columns_) rowBytes += column.width + sizeof(SQLLEN);
  blockRows_ = std::clamp<std::size_t>(blockBytes / rowBytes, 1, mostRows);
  SQLSetStmtAttrW(statement_.get(), SQL_ATTR_ROW_ARRAY_SIZE, attributeNumber(blockRows_), 0);
  SQLSetStmtAttrW(statement_.get(), SQL_ATTR_ROWS_FETCHED_PTR, &fetched_, 0);
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    Column& column = columns_[i];
    column.values.resize(column.width * blockRows_);
    column.lengths.resize(blockRows_);
    SQLSMALLINT type = SQL_C_WCHAR;
    if (column.transfer == Transfer::Integer) type = SQL_C_SBIGINT;
    if (column.transfer == Transfer::Double) type = SQL_C_DOUBLE;
    if (column.transfer == Transfer::Digits) type = SQL_C_CHAR;
    SQLBindCol(statement_.get(), static_cast<SQLUSMALLINT>(i + 1), type, column.values.data(),
               static_cast<SQLLEN>(column.width), column.lengths.data());
  }
}

std::size_t OdbcStatement::columnCount() {
  describeColumns();
  return columns_.size();
}

std::string_view OdbcStatement::columnName(std::size_t index) {
  describeColumns();
  return columns_.at(index).name;
}

ColumnKind OdbcStatement::columnKind(std::size_t index) {
  describeColumns();
  return columns_.at(index).kind;
}

/// A session that was lost has taken its statements with it.
void OdbcStatement::renewAfterLoss() {
  if (session_ == driver_.session()) return;
  driver_.requireConnection();
  prepare();
}

void OdbcStatement::bind(std::size_t index, const Value& value) {
  renewAfterLoss();
  if (index >= parameters_.size())
    throw StatementError(
        "the statement has no place for its value " + std::to_string(index + 1) + ": " + text_, 0);
  Parameter& parameter = parameters_[index];
  bool null = false;
  parameter.text = parameterText(parameter, value, null);
  parameter.length = null ? SQL_NULL_DATA : static_cast<SQLLEN>(parameter.text.size() * sizeof(char16_t));
  pass(index);
}

std::string_view OdbcStatement::parameterType(std::size_t index) {
  switch (parameters_.at(index).type) {
  case SQL_BIT:
  case SQL_TINYINT:
  case SQL_SMALLINT:
  case SQL_INTEGER:
  case SQL_BIGINT:
    return "BIGINT";
  case SQL_REAL:
  case SQL_FLOAT:
  case SQL_DOUBLE:
    return "DOUBLE PRECISION";
  case SQL_NUMERIC:
  case SQL_DECIMAL:
    return "NUMERIC";
  default:
    return "TEXT";
  }
}

/// Tells the driver where the value of a parameter stands.
void OdbcStatement::pass(std::size_t index) {
  Parameter& parameter = parameters_[index];
  const SQLULEN size = std::max<std::size_t>(parameter.text.size(), 1);
  call(Effect::Stays, [&] {
    return SQLBindParameter(statement_.get(), static_cast<SQLUSMALLINT>(index + 1), SQL_PARAM_INPUT,
                            SQL_C_WCHAR, driver_.textType(size), size, 0, parameter.text.data(),
                            static_cast<SQLLEN>(size * sizeof(char16_t)), &parameter.length);
  });
}

std::u16string OdbcStatement::parameterText(const Parameter& parameter, const Value& value,
                                            bool& null) const {
  null = value.isNull();
  if (null) return {};
  if (isNumber(parameter.type)) {
    const bool text = value.kind() == ValueKind::Text;
    const auto range = wholeRange(parameter.type);
    null = (text && trimWhitespace(value.textView()).empty()) ||
           (compares_ && (range ? !fits(*range, value) : !value.number()));
    if (null) return {};
    if (text && !value.number())
      throw StatementError("\"" + value.text() + "\" is not a number and cannot be stored as one", 0);
    // "13.0" is no whole number for a server.
    if (range && fits(*range, value) && !value.integer())
      return toUtf16(std::to_string(static_cast<std::int64_t>(value.number().value_or(0))));
  }
  return toUtf16(plainText(value));
}

void OdbcStatement::execute(bool wantsRows) {
  const auto attempt = [&] {
    call(effect_, [&] {
      if (open_) SQLFreeStmt(statement_.get(), SQL_CLOSE);
      open_ = true;
      return SQLExecute(statement_.get());
    });
  };
  const auto renew = [&] {
    prepare();
    for (std::size_t i = 0; i < parameters_.size(); ++i) pass(i);
  };
  fetched_ = 0;
  row_ = 0;
  if (session_ != driver_.session()) {
    driver_.requireConnection();
    renew();
  }
  if (wantsRows) describeColumns();
  try {
    attempt();
  } catch (const StatementError& error) {
    // The server does not run what it has compiled for tables that have been changed since.
    constexpr std::string_view outdated = "0A000";
    if (error.sqlState() != outdated) throw;
    renew();
    if (wantsRows) describeColumns();
    attempt();
  }
}

bool OdbcStatement::step() {
  if (!open_) {
    execute(true);
  } else if (row_ + 1 < fetched_) {
    ++row_;
    return true;
  }
  return fetch();
}

bool OdbcStatement::fetch() {
  if (columns_.empty()) return false;
  row_ = 0;
  fetched_ = 0;
  const SQLRETURN result =
      call(Effect::Stays, [&] { return SQLFetchScroll(statement_.get(), SQL_FETCH_NEXT, 0); });
  return result != SQL_NO_DATA && fetched_ > 0;
}

std::int64_t OdbcStatement::run() {
  const relational::StatementUse use(*this);
  execute(false);
  SQLLEN changed = 0;
  SQLRowCount(statement_.get(), &changed);
  return std::max<SQLLEN>(changed, 0);
}

void OdbcStatement::reset() noexcept {
  if (open_ && session_ == driver_.session()) SQLFreeStmt(statement_.get(), SQL_CLOSE);
  open_ = false;
  fetched_ = 0;
  row_ = 0;
}

Value OdbcStatement::column(std::size_t index, ColumnKind kind) {
  const Column& column = columns_.at(index);
  const SQLLEN length = column.lengths[row_];
  if (length == SQL_NULL_DATA) return Value::null();
  switch (column.transfer) {
  case Transfer::Integer: {
    std::int64_t number = 0;
    std::memcpy(&number, cell(column), sizeof number);
    if (kind == ColumnKind::Boolean) return Value(number != 0);
    return Value(number);
  }
  case Transfer::Double: {
    double number = 0;
    std::memcpy(&number, cell(column), sizeof number);
    return Value(number);
  }
  case Transfer::Digits:
    return digitsValue({cell(column), std::min(static_cast<std::size_t>(length), column.width - 1)}, kind);
  case Transfer::Text:
    break;
  }
  return Value(toUtf8(textValue(column, index)));
}

std::u16string OdbcStatement::textValue(const Column& column, std::size_t index) {
  const SQLLEN length = column.lengths[row_];
  if (length == SQL_NO_TOTAL || static_cast<std::size_t>(length) + sizeof(char16_t) > column.width)
    return longText(index);
  std::u16string text(static_cast<std::size_t>(length) / sizeof(char16_t), u'\0');
  std::memcpy(text.data(), cell(column), text.size() * sizeof(char16_t));
  return text;
}

std::u16string OdbcStatement::longText(std::size_t index) {
  if (!driver_.readsParts())
    throw StatementError("the ODBC driver cannot read the long text of the column " + columns_[index].name,
                         0);
  const auto rowNumber = static_cast<SQLSETPOSIROW>(row_ + 1);
  call(Effect::Stays,
       [&] { return SQLSetPos(statement_.get(), rowNumber, SQL_POSITION, SQL_LOCK_NO_CHANGE); });
  constexpr std::size_t part = 16384;
  std::u16string text;
  std::u16string buffer(part, u'\0');
  while (true) {
    SQLLEN left = 0;
    const short result = call(Effect::Stays, [&] {
      return SQLGetData(statement_.get(), static_cast<SQLUSMALLINT>(index + 1), SQL_C_WCHAR, buffer.data(),
                        static_cast<SQLLEN>(part * sizeof(char16_t)), &left);
    });
    if (result == SQL_NO_DATA || left == SQL_NULL_DATA) return text;
    const bool whole = result == SQL_SUCCESS;
    text.append(buffer, 0, whole ? static_cast<std::size_t>(left) / sizeof(char16_t) : part - 1);
    if (whole) return text;
  }
}

} // namespace qx::odbc
