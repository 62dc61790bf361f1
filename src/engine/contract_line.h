// What a contract job stores as a line of the contract table.
#pragma once

#include "engine/job_fields.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace qx {

/// What a position of a contract job holds in place of its header.
inline constexpr std::array contractPositionColumns{ColumnName("Menge"),         ColumnName("Preis"),
                                                    ColumnName("Artikelnummer"), ColumnName("Vertragsende"),
                                                    ColumnName("Vertragsart"),   ColumnName("Vertragstext")};

/// The positions of a contract job, the one that is taken over first.
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

/// The line of this key, or no row. Rows can be changed.
std::unique_ptr<Recordset> openContract(Connection& connection, const ContractKey& key);

/// `Bez` of a contract object; null when it is unknown.
Value contractObjectText(Connection& connection, std::string_view object);

/// The state that a job without one gets.
inline constexpr std::string_view activeContract = "A";

/// The job's state, or the default for an empty one.
std::string contractState(const JobFields& job);
/// The kind and the object of a contract in one of the states "I" and "E" are not checked. Compared exactly.
bool skipsObjectChecks(std::string_view state);

/// The text when it holds a date or a time of day, else null. A time-only midnight is no date; `noon`:
/// neither is "12:00:00 AM".
Value contractDate(const Value& text, bool noon);

/// A column of the contract table and the staging column that stands for it.
struct ContractPair {
  enum class Role : std::uint8_t { Plain, Key, Repeats };

  ColumnName line;
  ColumnName staged;
  Value (*written)(const Value& staged); ///< what processing writes for it
  /// `Key`: a line that exists has it in its own spelling and keeps it. `Repeats`: another column holds the
  /// same.
  Role role = Role::Plain;
};
/// In the order in which they are written.
std::span<const ContractPair> contractPairs();

struct ContractColumn {
  ColumnName column;
  Value content;
  bool isKey = false;
};

/// Every column that processing writes, with its defaults, but for the user and time of the change. The price
/// is an amount; one that fits none stands as it is.
std::vector<ContractColumn> contractColumns(Connection& connection, const JobFields& job);

} // namespace qx
