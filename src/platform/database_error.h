// The closed family of database failures, split by who must act.
#pragma once

#include <array>
#include <stdexcept>
#include <string>
#include <string_view>

namespace qx {

/// Any failure that a database reports. `what()` is a readable sentence that names the database.
class DatabaseError : public std::runtime_error {
public:
  DatabaseError(const std::string& message, int nativeCode, std::string_view sqlState = {})
      : std::runtime_error(message), nativeCode_(nativeCode) {
    sqlState.copy(sqlState_.data(), sqlState_.size());
  }
  /// The database's own error number; 0 for none.
  int nativeCode() const { return nativeCode_; }
  /// The five characters of SQLSTATE; empty when the database gives none.
  std::string_view sqlState() const {
    return sqlState_.front() == '\0' ? std::string_view()
                                     : std::string_view(sqlState_.data(), sqlState_.size());
  }

private:
  int nativeCode_;
  std::array<char, 5> sqlState_{};
};

/// The database refused this one statement (constraint, width, missing table or column). Its effects are
/// undone; the unit of work around it is still open.
class StatementError : public DatabaseError {
public:
  using DatabaseError::DatabaseError;
};

/// The database silently dropped a new row, as a trigger can make it do.
class NotInserted : public StatementError {
public:
  explicit NotInserted(std::string_view table)
      : StatementError("the database has not taken the new row of the table " + std::string(table), 0) {}
};

/// The statement rolled back the whole unit of work, for example through a trigger. Nothing of the unit
/// remains. Until its owner ends it with `rollbackWork`, every further statement raises this again.
class WorkLostError : public DatabaseError {
public:
  using DatabaseError::DatabaseError;
};

/// The unit of work got into the way of another program's and the database chose it to give way. The same
/// unit may succeed when it is done again.
class ConflictError : public WorkLostError {
public:
  using WorkLostError::WorkLostError;
};

/// The unit has given way to other programs in every try that it had; it is not done again.
class RepeatedConflictError : public WorkLostError {
public:
  using WorkLostError::WorkLostError;
};

/// A statement was ended on request while it ran. A unit that was open must be considered rolled back.
class InterruptedError : public DatabaseError {
public:
  using DatabaseError::DatabaseError;
};

/// Another program held the database for longer than the caller was willing to wait.
class BusyError : public DatabaseError {
public:
  using DatabaseError::DatabaseError;
};

/// The store cannot go on: disk full, read-only or unreadable file, lost connection, not a database. A unit
/// that was open must be considered rolled back.
class StoreError : public DatabaseError {
public:
  using DatabaseError::DatabaseError;
};

/// The server cannot be reached or has ended the session. A later statement outside of a unit connects anew.
class ConnectionLostError : public StoreError {
public:
  using StoreError::StoreError;
};

/// The connection was lost while a unit of work was being committed: it is not known whether it is durable.
class CommitUnknownError : public ConnectionLostError {
public:
  using ConnectionLostError::ConnectionLostError;
};

/// The server ended a statement that took longer than it allows, or was told to end it.
class StatementEndedError : public StoreError {
public:
  using StoreError::StoreError;
};

/// The user lacks a right; `what()` names right and table.
class MissingRightError : public StoreError {
public:
  using StoreError::StoreError;
};

/// The user may read the database, but not change it.
class ReadOnlyError : public StoreError {
public:
  using StoreError::StoreError;
};

} // namespace qx
