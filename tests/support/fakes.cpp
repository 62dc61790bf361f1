#include "support/fake_desktop.h"
#include "support/fake_system.h"

#include <stdexcept>

namespace qx {

std::optional<GuidFields> SequentialGuids::create() {
  if (failing) return std::nullopt;
  return GuidFields{++last, 0, 0, {}};
}

std::string MemoryLocalSettings::read(std::string_view application, std::string_view section,
                                      std::string_view key) {
  if (failing) throw std::runtime_error("the local settings cannot be read");
  const auto found = values.find({std::string(application), std::string(section), std::string(key)});
  return found == values.end() ? std::string() : found->second;
}

void MemoryLocalSettings::write(std::string_view application, std::string_view section, std::string_view key,
                                std::string_view value) {
  if (failing) throw std::runtime_error("the local settings cannot be written");
  values[{std::string(application), std::string(section), std::string(key)}] = value;
}

std::string FixedIniFile::read(std::string_view file, std::string_view section, std::string_view key) {
  files.emplace_back(file);
  const auto found = values.find({std::string(section), std::string(key)});
  return found == values.end() ? std::string() : found->second;
}

void RecordingDiagnostics::report(const Diagnostic& diagnostic) noexcept {
  entries.push_back(
      {std::string(diagnostic.where), std::string(diagnostic.what), std::string(diagnostic.job)});
}

std::string RecordingDiagnostics::text() const {
  std::string lines;
  for (const Entry& entry : entries)
    lines.append(entry.where).append(" | ").append(entry.what).append(" | ").append(entry.job).append("\n");
  return lines;
}

std::string RecordingDesktop::texts() const {
  std::string lines;
  for (const Message& message : shown) lines.append(message.text).append("\n");
  return lines;
}

} // namespace qx
