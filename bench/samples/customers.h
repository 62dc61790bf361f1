// Customer jobs made up by number: the same number always gives the same job.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qx::bench {

/// One property of a staged job.
struct SampleField {
  std::string_view property; ///< as the JSON names it
  std::string_view column;   ///< of the table `ImportKopf`
  std::string value;
  bool number = false;
};

/// Every stored property of a customer job, those without a value included.
using SampleJob = std::vector<SampleField>;

/// How customer numbers follow each other: as a shop gives them out, or so that neighbours in the file are
/// far apart in every index.
enum class Numbering : std::uint8_t { Ascending, Scattered };

std::string customerNumber(std::uint32_t number, Numbering numbering = Numbering::Ascending);
std::string customerName(std::uint32_t number);

/// The keys of the jobs are scattered in any case. Every third customer brings along a shipping address.
SampleJob sampleCustomer(std::uint32_t number, Numbering numbering = Numbering::Ascending);

/// The value of a column; empty when the job has none.
const std::string& valueOf(const SampleJob& job, std::string_view column);

/// The codes that the jobs name. All of them must exist where the jobs are to be written.
struct SampleCode {
  std::string_view table;
  std::string_view column;
  std::string_view textColumn;
  std::string value;
  std::string text;
};
std::vector<SampleCode> sampleCodes();

} // namespace qx::bench
