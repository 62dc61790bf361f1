// The question before jobs are deleted, and the file in which they are kept.
#pragma once

#include "platform/environment.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace qx {

enum class DeletionAnswer : std::uint8_t {
  Keep,
  Delete,
  SaveFirst, ///< delete once they are saved in a file
};

/// Asks the clerk; null to leave it to a yes-no question.
using AskDeletion = std::function<std::optional<DeletionAnswer>(const Message& question)>;

struct DeletionConsent {
  bool given = false;
  std::string file; ///< where the jobs were saved; empty when they were not

  explicit operator bool() const { return given; }
};

/// Asks whether these jobs may be deleted and saves them first where the clerk wants that. No consent also
/// when no file was chosen or the jobs could not be saved, which is told.
DeletionConsent askBeforeDeletion(Environment& environment, const AskDeletion& ask, const Message& question,
                                  const std::vector<std::string>& jobIds);

/// "3 Vorgänge gelöscht" with where they were saved: ", gesichert in vorgaenge.json".
std::string deletionResult(std::string deleted, const DeletionConsent& consent);

} // namespace qx
