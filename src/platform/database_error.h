// The closed family of database failures, split by who must act.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace qx {

/// Any failure that a database reports. `what()` is a sentence for people that names the database.
class DatabaseError : public std::runtime_error {
public:
  DatabaseError(const std::string& message, int nativeCode)
      : std::runtime_error(message), nativeCode_(nativeCode) {}
  /// The number that the database gave for the failure; 0 when it gave none.
  int nativeCode() const { return nativeCode_; }

private:
  int nativeCode_;
};

/// The database refused this one statement (constraint, width, missing table or column). Its effects are
/// undone; the unit of work around it is still open.
class StatementError : public DatabaseError {
public:
  using DatabaseError::DatabaseError;
};

/// The database left a new row out without a word, as a trigger can.
class NotInserted : public StatementError {
public:
  explicit NotInserted(std::string_view table)
      : StatementError("the database has not taken the new row of the table " + std::string(table), 0) {}
};

/// The statement took the whole unit of work with it, for example by a trigger that rolls back. Nothing of
/// the unit remains. Until its owner ends it with `rollbackWork`, every further statement raises this again.
class WorkLostError : public DatabaseError {
public:
  using DatabaseError::DatabaseError;
};

/// A statement was ended on request while it ran. A unit that was open must be considered rolled back.
class InterruptedError : public DatabaseError {
public:
  using DatabaseError::DatabaseError;
};

/// Another program kept the database for longer than the caller was ready to wait.
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

} // namespace qx
