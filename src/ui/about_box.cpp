#include "ui/about_box.h"

#include "platform/failure.h"
#include "platform/path_text.h"

#include <cstdint>
#include <filesystem>
#include <stdexcept>

namespace qx {
namespace {

constexpr std::string_view defaultVersion = "6.3.0";
constexpr std::string_view unknown = "nicht bekannt";

/// In KB below one MB; rounded up, so that no file seems empty.
std::string sizeText(std::uintmax_t bytes) {
  constexpr std::uintmax_t kilo = 1024;
  const std::uintmax_t kilobytes = (bytes + kilo - 1) / kilo;
  if (kilobytes < kilo) return std::to_string(kilobytes) + " KB";
  return std::to_string((kilobytes + kilo - 1) / kilo) + " MB";
}

template <class Read>
InformationLine line(Environment& environment, const char* name, Read&& read) {
  InformationLine line{name, std::string(unknown)};
  trapped(environment.diagnostics, {"system information"}, [&] { line.value = read(); });
  return line;
}

} // namespace

std::string erpVersion(Environment& environment) {
  std::string version;
  trapped(environment.diagnostics, {"version component"},
          [&] { version = environment.components.createVersion()->version(); });
  return version.empty() ? std::string(defaultVersion) : version;
}

std::vector<InformationLine> workInformation(Environment& environment) {
  const auto file = [&] {
    if (!environment.connection) throw std::runtime_error("there is no connection");
    return environment.connection->connectionString();
  };
  const auto session = [&]() -> Session& {
    if (!environment.session) throw std::runtime_error("no ERP session is connected");
    return *environment.session;
  };
  return {line(environment, "Datenbank", file),
          line(environment, "Größe der Datenbank",
               [&] { return sizeText(std::filesystem::file_size(pathOf(file()))); }),
          line(environment, "Benutzer", [&] { return session().UserName(); }),
          line(environment, "Sitzungsdatum", [&] { return germanDate(session().GetSessionDate()); })};
}

std::string informationText(const std::vector<InformationLine>& lines) {
  std::string text;
  for (const InformationLine& line : lines) text += line.name + ": " + line.value + "\n";
  return text;
}

} // namespace qx
