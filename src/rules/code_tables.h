// The code tables and the banner of scrambled job files.
#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace qx {

/// The banners of a plain job file of version 2 and, longer, of version 1.
inline constexpr std::string_view jobFileBanner = "Quorvex ImportJob V 2.0";
inline constexpr std::string_view jobFileBanner1 = "Quorvex ImportJob V 1.0.1";

/// The characters that are scrambled: the printable ASCII characters but for the double quote.
inline constexpr std::size_t scrambledCharacters = 94;

/// The code tables that installations share to exchange scrambled files.
struct CodeTables {
  /// The character at index p of a table replaces the p-th scrambled character in code order.
  std::array<std::string, 4> tables;
  /// Replaces `jobFileBanner` in a scrambled file: the same number of bytes in code page 1252. Empty: the
  /// banner scrambled with the tables.
  std::string banner;
};

/// Default tables of this program, shared with no other software.
CodeTables defaultCodeTables();

/// Reads four lines of 94 characters and the line of the banner; blanks count and there are no comments.
/// Raises `std::runtime_error`, which names the line, for anything else.
CodeTables parseCodeTables(std::string_view content);

/// The path of "Codetabellen.txt" in a folder, existing or not.
std::filesystem::path codeTablesFile(const std::filesystem::path& folder);

/// The tables of that file, or the default ones without it. Raises `std::runtime_error`, which names file and
/// line, when it cannot be used.
CodeTables readCodeTables(const std::filesystem::path& folder);

} // namespace qx
