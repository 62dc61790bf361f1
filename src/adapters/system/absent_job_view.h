// Stands for the job window in programs that have none.
#pragma once

#include "platform/desktop.h"

namespace qx {

/// Tells the user that the window is missing and how to see the jobs without it.
class AbsentJobView final : public JobView {
public:
  explicit AbsentJobView(Desktop& desktop) : desktop_(desktop) {}
  void open() override;
  void close() override {}

private:
  Desktop& desktop_;
};

} // namespace qx
