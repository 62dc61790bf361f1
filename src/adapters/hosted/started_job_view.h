// The window program beside the component.
#pragma once

#include "automation/classes/component.h"
#include "platform/started_program.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <utility>

namespace qx {

/// The window program of a folder. It gets the database through its environment, since a command line is for
/// everybody to read: that of the host's connection as the program names it, with the password that it holds.
class StartedJobView final : public automation::JobViewProgram {
public:
  /// `wait`: how long `start` waits at most for the window to open. A program that ends later is noticed by
  /// `ended`.
  explicit StartedJobView(std::filesystem::path folder,
                          std::chrono::milliseconds wait = std::chrono::seconds(2))
      : folder_(std::move(folder)), wait_(wait) {}

  std::optional<int> start(Connection& connection) override;
  std::optional<int> ended() override;

private:
  std::filesystem::path folder_;
  std::chrono::milliseconds wait_;
  std::unique_ptr<StartedProgram> program_; ///< null before it was started
};

} // namespace qx
