// Another program that runs beside this one.
#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace qx {

/// A program that was started. It goes on when this object ends.
class StartedProgram {
public:
  StartedProgram() = default;
  StartedProgram(const StartedProgram&) = delete;
  StartedProgram& operator=(const StartedProgram&) = delete;
  virtual ~StartedProgram() = default;

  /// Its exit status; null while it runs.
  virtual std::optional<int> ended() = 0;
  /// The same, after waiting at most so long until it has ended or, where the system can tell, waits for its
  /// user.
  virtual std::optional<int> untilReady(std::chrono::milliseconds limit) = 0;
};

/// Starts a program, which is named without the system's ending of programs. It gets the environment of this
/// one with these variables in place of those of their names. Raises `std::system_error`.
std::unique_ptr<StartedProgram>
startProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
             const std::vector<std::pair<std::string, std::string>>& variables);

} // namespace qx
