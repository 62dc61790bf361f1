#include "adapters/odbc/failure.h"

#include "adapters/odbc/odbc_call.h"
#include "adapters/odbc/unicode.h"
#include "model/text.h"
#include "platform/database_error.h"

#include <algorithm>

namespace qx::odbc {
namespace {

/// The sentence of the database, without the severity before it and what the driver adds.
std::string sentence(std::string message) {
  if (const auto end = message.find(";\n"); end != std::string::npos) message.erase(end);
  for (const std::string_view severity : {"ERROR: ", "FATAL: ", "PANIC: "})
    if (message.starts_with(severity)) message.erase(0, severity.size());
  // Behind the first line stands where in a function it happened.
  message.erase(std::min(message.find('\n'), message.size()));
  return std::string(trimWhitespace(message));
}

std::string firstWord(std::string_view statement) {
  statement = trimWhitespace(statement);
  std::string word(statement.substr(0, statement.find_first_of(" \n\t")));
  for (char& c : word)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return word;
}

/// The right that a statement needs as a whole, beside that to read.
std::string neededRight(std::string_view statement) {
  const std::string lower = asciiLower(trimWhitespace(statement));
  if (lower.ends_with("for update")) return "UPDATE";
  if (lower.starts_with("create temporary")) return "TEMPORARY";
  return firstWord(statement);
}

std::string nextStep(const Failure& failure) {
  // What the driver manager reports before any driver was loaded.
  if (failure.sqlState == "IM002" || failure.sqlState == "01000")
    return ". No driver or data source of this name is installed: odbcinst -q -d lists the drivers";
  // This word begins what the server itself has answered.
  if (failure.message.find("FATAL:") != std::string::npos || failure.sqlState.starts_with("28"))
    return ". Check database, user and password in the connection string, and whether the server takes more "
           "connections";
  if (failure.lostConnection())
    return ". Check that the server runs and can be reached, then start the command again";
  if (failure.sqlState.starts_with("53")) return ". Make room on the server, then start the command again";
  if (failure.sqlState.starts_with("58") || failure.sqlState.starts_with("XX"))
    return ". Look into the log of the server, then start the command again";
  return "";
}

[[noreturn]] void raiseStoreError(const Failure& failure, const std::string& target) {
  const std::string text =
      target + ": " + failure.message + " (" + failure.sqlState + ")" + nextStep(failure);
  if (failure.lostConnection()) throw ConnectionLostError(text, failure.nativeCode, failure.sqlState);
  throw StoreError(text, failure.nativeCode, failure.sqlState);
}

} // namespace

Failure failureOf(short kind, void* handle) {
  constexpr std::size_t longest = 4000;
  std::u16string state(SQL_SQLSTATE_SIZE + 1, u'\0');
  std::u16string text(longest, u'\0');
  SQLINTEGER nativeCode = 0;
  SQLSMALLINT length = 0;
  Failure failure;
  for (SQLSMALLINT record = 1;; ++record) {
    const SQLRETURN result = SQLGetDiagRecW(kind, handle, record, wideText(state), &nativeCode,
                                            wideText(text), static_cast<SQLSMALLINT>(longest), &length);
    if (!SQL_SUCCEEDED(result)) break;
    const auto end =
        std::clamp<std::size_t>(static_cast<std::size_t>(std::max<SQLSMALLINT>(length, 0)), 0, longest - 1);
    const std::string message = sentence(toUtf8({text.data(), end}));
    // The first record tells the reason; what the driver manager adds completes it.
    if (record == 1) {
      failure.sqlState = toUtf8({state.data(), SQL_SQLSTATE_SIZE});
      failure.nativeCode = nativeCode;
      failure.message = message;
    } else if (failure.message.find(message) == std::string::npos) {
      failure.message += "; " + message;
    }
  }
  if (failure.sqlState.empty()) failure = {"HY000", 0, "the ODBC driver gives no reason"};
  return failure;
}

void raiseConnectFailure(const Failure& failure, const std::string& target) {
  raiseStoreError(failure, target);
}

void raiseFailure(const Failure& failure, const std::string& target, std::string_view statement,
                  bool interruptRequested) {
  const int code = failure.nativeCode;
  const std::string& state = failure.sqlState;
  const std::string named = target + ": " + failure.message;
  switch (failure.kind()) {
  case FailureKind::Statement:
    throw StatementError(failure.message, code, state);
  case FailureKind::Conflict:
    throw ConflictError(failure.message, code, state);
  case FailureKind::Busy:
    throw BusyError(named, code, state);
  case FailureKind::Interrupted:
    if (interruptRequested) throw InterruptedError(named, code, state);
    throw StatementEndedError(named + " (" + state +
                                  "). A statement took longer than the server allows, or somebody ended it "
                                  "there: have the limit raised, then start the command again",
                              code, state);
  case FailureKind::Rights:
    throw MissingRightError(named + ". The user needs the right " + neededRight(statement) + " there", code,
                            state);
  case FailureKind::Store:
    break;
  }
  raiseStoreError(failure, target);
}

} // namespace qx::odbc
