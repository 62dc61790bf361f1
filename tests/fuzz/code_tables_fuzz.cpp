// Any bytes as a file of code tables; tables that are taken unscramble what they have scrambled.
#include "model/code_page.h"
#include "rules/scrambler.h"

#include <cstdint>
#include <cstdlib>
#include <stdexcept>

using namespace qx;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string content(reinterpret_cast<const char*>(data), size);
  // The bytes serve as a text, too, whatever they are in UTF-8.
  std::string bytes;
  appendCodePage(bytes, content);
  static const Scrambler own(defaultCodeTables());
  if (own.Decrypt(own.Encrypt(content)) != content) std::abort();
  CodeTables tables;
  try {
    tables = parseCodeTables(content);
  } catch (const std::runtime_error&) {
    return 0;
  }
  const Scrambler scrambler(tables);
  if (scrambler.Decrypt(scrambler.Encrypt(content)) != content || scrambler.banner() != tables.banner)
    std::abort();
  return 0;
}
