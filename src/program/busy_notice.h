// How long a command waits for a database that another program holds.
#pragma once

#include "platform/database.h"

#include <chrono>
#include <ostream>

namespace qx {

/// Waits for up to 60 seconds and prints one notice after the first second.
class BusyNotice final : public BusyWait {
public:
  explicit BusyNotice(std::ostream& messages) : messages_(messages) {}

  bool goOn(std::chrono::milliseconds waited) override {
    if (!shown_ && waited >= firstNotice) {
      shown_ = true;
      messages_ << "The database is in use by another program; waiting up to 60 seconds..." << std::endl;
    }
    return waited < limit;
  }

private:
  static constexpr std::chrono::milliseconds firstNotice{1000};
  static constexpr std::chrono::milliseconds limit{60000};

  std::ostream& messages_;
  bool shown_ = false;
};

} // namespace qx
