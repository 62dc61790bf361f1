// Replaces the job window in programs without one.
#pragma once

#include "platform/desktop.h"

namespace qx {

/// Informs the user that the window is missing and how to list the jobs.
class AbsentJobView final : public JobView {
public:
  explicit AbsentJobView(Desktop& desktop) : desktop_(desktop) {}
  void open() override;
  void close() override {}

private:
  Desktop& desktop_;
};

} // namespace qx
