// The rows of one statement in a record set of the host's data access interface.
#pragma once

#include "adapters/ado/field_values.h"
#include "adapters/ado/host_database.h"
#include "platform/database.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qx::ado {

enum class RowUse : std::uint8_t {
  Fetched, ///< all rows as they were when the statement ran
  Keyset,  ///< each row as it is when it is reached
  Stream,  ///< to be read forward only
};

/// A client-side cursor on a keyset with optimistic locking. A column that is set reaches the record set at
/// once, so in the order in which they are set, and the database with `update`. What is written through the
/// same connection meanwhile is no conflict: a row is read again before it is changed.
class AdoRecordset final : public Recordset {
public:
  /// The database must outlive the record set.
  AdoRecordset(HostDatabase& database, const Sql& statement, RowUse use);
  AdoRecordset(const AdoRecordset&) = delete;
  AdoRecordset& operator=(const AdoRecordset&) = delete;
  ~AdoRecordset() override;

  std::size_t recordCount() const override;
  bool eof() const override { return position_ >= count_; }
  void moveFirst() override { moveTo(0); }
  void moveNext() override { moveTo(position_ + 1); }
  void moveTo(std::size_t position) override;
  bool resync() override;
  void requery() override;

  std::size_t fieldCount() const override { return fields_.size(); }
  std::string_view fieldName(std::size_t index) const override { return fields_.at(index).name; }
  bool hasField(ColumnName column) const override { return find(column) < fields_.size(); }
  const Value& value(ColumnName column) override { return value(place(column)); }
  const Value& value(std::size_t index) override;

  void addNew() override;
  void set(ColumnName column, Value value) override;
  void update() override;
  void cancelUpdate() override;

private:
  struct Field {
    automation::ObjectPointer object; ///< of the current row
    std::string name;
    std::uint64_t hash;
    FieldKind kind;
    std::optional<Value> known; ///< of the current row, or what it is to become
  };

  void readFields();
  std::size_t find(ColumnName column) const;
  std::size_t place(ColumnName column) const;
  void forgetRow();
  bool readAgain();
  void requireChangeable() const;
  void edit();

  HostDatabase& database_;
  automation::ObjectPointer rows_;
  RowUse use_;
  std::vector<Field> fields_;
  std::size_t count_ = 0;
  std::size_t position_ = 0;
  std::uint64_t writesWhenRead_ = 0;
  bool changeable_ = true; ///< the statement is over one table
  bool read_ = true;       ///< the current row of a keyset was read
  bool present_ = true;    ///< it still exists
  bool adding_ = false;
  bool editing_ = false; ///< columns of the current row are set
};

/// The statement as the host's database runs it. Rows of equal sort keys come in order of insertion where the
/// table tells it.
struct SelectText {
  std::string text;
  bool overOneTable = false; ///< so its rows can be changed
};
SelectText selectText(HostDatabase& database, const Sql& statement);

} // namespace qx::ado
