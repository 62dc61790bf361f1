// The code tables and the banner of scrambled job files.
#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace qx {

/// The banner of a plain job file and, longer, that of one of version 1.
inline constexpr std::string_view jobFileBanner = "Quorvex ImportJob V 2.0";
inline constexpr std::string_view jobFileBanner1 = "Quorvex ImportJob V 1.0.1";

/// The characters that are scrambled: the printable ASCII characters but for the double quote.
inline constexpr std::size_t scrambledCharacters = 94;

/// The convention between installations that exchange scrambled files.
struct CodeTables {
  /// The character at place p of a table stands for the p-th scrambled character in code order.
  std::array<std::string, 4> tables;
  /// What stands for `jobFileBanner` in a scrambled file: as many bytes of code page 1252. Empty: the banner
  /// scrambled with the tables.
  std::string banner;
};

/// Tables made for this program. They belong to no other installation.
CodeTables defaultCodeTables();

/// Reads four lines of 94 characters and the line of the banner, each as it stands: blanks count and there
/// are no comments. Raises `std::runtime_error` that names the line for everything else.
CodeTables parseCodeTables(std::string_view content);

/// The file "Codetabellen.txt" in a folder, whether it is there or not.
std::filesystem::path codeTablesFile(const std::filesystem::path& folder);

/// The tables of that file, the default ones when there is no such file. Raises `std::runtime_error` that
/// names file and line when it cannot be used.
CodeTables readCodeTables(const std::filesystem::path& folder);

} // namespace qx
