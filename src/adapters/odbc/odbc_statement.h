// A prepared statement with its parameters and a block of its rows.
#pragma once

#include "adapters/odbc/handle.h"
#include "adapters/odbc/odbc_driver.h"
#include "adapters/sql/driver.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace qx::odbc {

/// Parameters go out as texts whose type the server infers from where they stand, so that a code keeps the
/// comparison of its column and an amount is never a double on its way. A text for a number column is checked
/// here: an empty one is null; one that is no number fits no row of a comparison and is refused when it is
/// written.
class OdbcStatement final : public relational::Statement {
public:
  OdbcStatement(OdbcDriver& driver, std::string_view text);
  OdbcStatement(const OdbcStatement&) = delete;
  OdbcStatement& operator=(const OdbcStatement&) = delete;
  ~OdbcStatement() override;

  std::size_t columnCount() override;
  std::string_view columnName(std::size_t index) override;
  relational::ColumnKind columnKind(std::size_t index) override;
  void bind(std::size_t index, const Value& value) override;
  std::size_t parameterCount() override { return parameters_.size(); }
  std::string_view parameterType(std::size_t index) override;
  bool step() override;
  Value column(std::size_t index, relational::ColumnKind kind) override;
  std::int64_t run() override;
  void reset() noexcept override;

private:
  /// The driver interface's type of lengths, as long as a pointer.
  using Length = std::conditional_t<sizeof(void*) == sizeof(std::int64_t), std::ptrdiff_t, long>;
  struct Parameter {
    short type = 0; ///< what the server expects there
    std::u16string text;
    Length length = 0; ///< in bytes, or the mark of null
  };
  enum class Transfer : std::uint8_t { Integer, Double, Digits, Text };
  struct Column {
    std::string name;
    relational::ColumnKind kind = relational::ColumnKind::Plain;
    Transfer transfer = Transfer::Text;
    std::size_t width = 0;    ///< bytes of one value
    std::vector<char> values; ///< of a block of rows
    std::vector<Length> lengths;
  };

  void forgetIfFreed();
  void prepare();
  void renewAfterLoss();
  void pass(std::size_t index);
  void describeParameters(std::size_t count);
  void describeColumns();
  void bindColumns();
  void execute(bool wantsRows);
  bool fetch();
  std::u16string textValue(const Column& column, std::size_t index);
  std::u16string longText(std::size_t index);
  std::u16string parameterText(const Parameter& parameter, const Value& value, bool& null) const;
  short call(Effect effect, const std::function<short()>& run);
  const char* cell(const Column& column) const { return column.values.data() + row_ * column.width; }

  OdbcDriver& driver_;
  std::string text_;
  Effect effect_;
  bool compares_; ///< its parameters are compared with columns, not written into them
  Handle statement_;
  int session_ = 0; ///< of the driver, when the statement was prepared
  std::vector<Parameter> parameters_;
  std::vector<Column> columns_;
  bool described_ = false;
  bool open_ = false; ///< executed and not yet reset
  std::size_t blockRows_ = 1;
  unsigned long fetched_ = 0; ///< rows in the block
  std::size_t row_ = 0;       ///< the current one
};

} // namespace qx::odbc
