// Which files of watched folders have been staged.
#pragma once

#include "platform/database.h"

#include <string>
#include <string_view>

namespace qx {

/// A file of a watched folder under the key that it got when it was taken.
struct StagedFile {
  std::string key;
  std::string folder;
  std::string name;
};

/// Enters the file; call it in the unit of work that stages its jobs, so that both are there or neither is.
void enterStagedFile(Connection& connection, const StagedFile& file, std::string_view timeStamp);
bool isStagedFile(Connection& connection, std::string_view key);
/// Once the file lies where it is not taken again.
void removeStagedFile(Connection& connection, std::string_view key);

} // namespace qx
