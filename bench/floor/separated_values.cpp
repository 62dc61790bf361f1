#include "floor/separated_values.h"

#include <csv.h>

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <vector>

namespace qx::bench {

void readSeparatedValues(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  csv_parser parser{};
  if (csv_init(&parser, CSV_STRICT) != 0) throw std::runtime_error("no memory");
  csv_set_delim(&parser, ';');
  std::uint64_t values = 0;
  const auto count = [](void*, std::size_t, void* counter) { ++*static_cast<std::uint64_t*>(counter); };
  constexpr std::size_t portion = std::size_t{1} << 16U;
  std::vector<char> buffer(portion);
  while (stream.read(buffer.data(), static_cast<std::streamsize>(buffer.size())) || stream.gcount() > 0) {
    const auto length = static_cast<std::size_t>(stream.gcount());
    if (csv_parse(&parser, buffer.data(), length, count, nullptr, &values) != length)
      throw std::runtime_error(file + ": " + csv_strerror(csv_error(&parser)));
  }
  csv_fini(&parser, count, nullptr, &values);
  csv_free(&parser);
  std::cout << values << '\n';
}

} // namespace qx::bench
