#include "rules/code_tables.h"

#include "platform/path_text.h"
#include "rules/scrambler.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace qx {
namespace {

constexpr std::size_t tableCount = 4;
/// Five lines have 404 characters; a far longer file is no such file.
constexpr std::size_t longestFile = 4096;

constexpr std::array<std::string_view, tableCount> ownTables{
    R"(e4IM+dP&1t<KfwFV#=AHmCzjp^GQ'35$hZS0v)s]`6@_c7q[U8Wo}>.O/:y-9liE~L (Y{;*bnX?Dg2u!,k|raNRTB%Jx\)",
    R"(QMF:kq?owiG7@scEn3]v#/eOg(Xpd*4R{P)h|!l%N8y,;ubUCKt>[`B <zDf\IYHA.W}Zj$6m+^T~5_-J'0x129aLr=S&V)",
    R"([AxP(tOCUmK]v+reo'~|Q}3#$pflR;sNz>Euiy/-nL<V=Mdw_H?0D)7c25bWI@T{S9\ haY4!B1jk8*`FG:^%&6gJX,q.Z)",
    R"(VtBwWC]i}r,*&E!30g#FI~Kq+4e/z|>m6MsT58cxA Zv1P9@2X'd`Dbu?%Nko_y7.$f=LHjUQ-(;{S\Y<paGJ)^:n[lOhR)"};

constexpr bool isScrambled(char c) { return c >= ' ' && c <= '~' && c != '"'; }

/// Whether the table holds every scrambled character once.
constexpr bool isPermutation(std::string_view table) {
  if (table.size() != scrambledCharacters) return false;
  std::array<bool, 128> seen{};
  for (const char c : table) {
    if (!isScrambled(c)) return false;
    bool& met = seen[static_cast<unsigned char>(c)];
    if (met) return false;
    met = true;
  }
  return true;
}
static_assert(std::ranges::all_of(ownTables, isPermutation));

[[noreturn]] void refuse(std::size_t line, const std::string& problem) {
  throw std::runtime_error("line " + std::to_string(line) + ": " + problem);
}

/// Takes the next line without its end from the front.
std::string_view takeLine(std::string_view& content) {
  const std::size_t end = content.find('\n');
  std::string_view line = content.substr(0, end);
  content.remove_prefix(end == std::string_view::npos ? content.size() : end + 1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

void checkBanner(const CodeTables& read) {
  constexpr std::size_t line = tableCount + 1;
  const std::string& banner = read.banner;
  if (banner.size() != jobFileBanner.size())
    refuse(line, "the banner must have 23 characters and has " + std::to_string(banner.size()));
  if (banner.find('"') != std::string_view::npos) refuse(line, "the banner holds a double quote");
  if (banner == jobFileBanner || jobFileBanner1.starts_with(banner))
    refuse(line, "the banner is that of a plain file");
  if (Scrambler(read).banner1().starts_with(banner)) refuse(line, "the banner is that of a version-1 file");
}

std::string readWhole(const std::filesystem::path& file) {
  errno = 0;
  std::ifstream stream(file, std::ios::binary);
  std::string content(longestFile + 1, '\0');
  if (stream) stream.read(content.data(), static_cast<std::streamsize>(content.size()));
  if (!stream.is_open() || stream.bad())
    throw std::runtime_error("it cannot be read: " + std::generic_category().message(errno));
  content.resize(static_cast<std::size_t>(stream.gcount()));
  if (content.size() > longestFile) throw std::runtime_error("it has more than five lines");
  return content;
}

} // namespace

CodeTables defaultCodeTables() {
  CodeTables own;
  std::ranges::copy(ownTables, own.tables.begin());
  return own;
}

CodeTables parseCodeTables(std::string_view content) {
  CodeTables read;
  for (std::size_t i = 0; i < tableCount; ++i) {
    read.tables[i] = takeLine(content);
    if (!isPermutation(read.tables[i]))
      refuse(i + 1, "a table holds each of the 94 printable characters but the double quote once");
  }
  read.banner = takeLine(content);
  checkBanner(read);
  if (!content.empty()) refuse(tableCount + 2, "nothing may follow the banner");
  return read;
}

std::filesystem::path codeTablesFile(const std::filesystem::path& folder) {
  return folder / "Codetabellen.txt";
}

CodeTables readCodeTables(const std::filesystem::path& folder) {
  const std::filesystem::path file = codeTablesFile(folder);
  if (!std::filesystem::exists(file)) return defaultCodeTables();
  try {
    return parseCodeTables(readWhole(file));
  } catch (const std::runtime_error& problem) {
    throw std::runtime_error(textOf(file) + ", " + problem.what());
  }
}

} // namespace qx
