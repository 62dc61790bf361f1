// The line of the contract table that a contract job writes.
#pragma once

#include "engine/job_fields.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace qx {

/// The values that a position of a contract job may have in place of its header.
inline constexpr std::array contractPositionColumns{ColumnName("Menge"),         ColumnName("Preis"),
                                                    ColumnName("Artikelnummer"), ColumnName("Vertragsende"),
                                                    ColumnName("Vertragsart"),   ColumnName("Vertragstext")};

/// The positions of a contract job; the first one is taken over.
std::unique_ptr<Recordset> openContractPositions(Connection& connection, std::string_view jobId);

/// The four values that identify a line of the contract table. Empty ones are stored as "", never as null, so
/// that the search finds the line again.
struct ContractKey {
  std::string customer;
  std::string number;
  std::string object; ///< the job's `Artikelnummer`
  std::string kind;   ///< `Vertragsart`

  static ContractKey of(const JobFields& job);
};

/// Opens the line of this key, or no row. Rows can be changed.
std::unique_ptr<Recordset> openContract(Connection& connection, const ContractKey& key);

/// `Bez` of a contract object; null when unknown.
Value contractObjectText(Connection& connection, std::string_view object);

/// The default state of a job.
inline constexpr std::string_view activeContract = "A";

/// The job's state, or the default for an empty one.
std::string contractState(const JobFields& job);
/// Whether kind and object are not checked: in the states "I" and "E", compared exactly.
bool skipsObjectChecks(std::string_view state);

/// How a date field spells "no date" besides "00:00:00".
enum class NoDate : std::uint8_t { Midnight, MidnightOrNoon };

/// The text if it is a date or a time of day, otherwise null. "00:00:00" is null; with
/// `NoDate::MidnightOrNoon` so is "12:00:00 AM".
Value contractDate(const Value& text, NoDate none);

/// A column of the contract table and its staging column.
struct ContractPair {
  enum class Role : std::uint8_t { Plain, Key, Repeats };

  ColumnName line;
  ColumnName staged;
  Value (*written)(const Value& staged) = nullptr; ///< the value that processing writes
  /// `Key`: an existing line keeps its own spelling. `Repeats`: another column has the same value.
  Role role = Role::Plain;
};
/// In the order in which they are written.
std::span<const ContractPair> contractPairs();

struct ContractColumn {
  ColumnName column;
  Value content;
  bool isKey = false;
};

/// Every column that processing writes, with its defaults, except user and time of the change. The price is
/// an amount, or the staged value when it does not fit one.
std::vector<ContractColumn> contractColumns(Connection& connection, const JobFields& job);

} // namespace qx
