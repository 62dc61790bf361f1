// What the job view is doing at the moment.
#pragma once

#include "ui/job_view_presenter.h"

#include <string_view>

namespace qx {

/// Blocks every command and key while something is under way.
class JobViewPresenter::Busy {
public:
  Busy(JobViewPresenter& view, Work work, std::string_view label) : view_(view) {
    view_.work_ = work;
    view_.stopAsked_ = false;
    view_.state_.progressVisible = true;
    view_.state_.progress.reset();
    if (view_.mayBeStopped()) view_.state_.progress = 0;
    say(label);
  }
  Busy(const Busy&) = delete;
  Busy& operator=(const Busy&) = delete;
  ~Busy() {
    view_.state_.label.clear();
    view_.state_.progressVisible = false;
    view_.work_ = Work::None;
    view_.compose();
  }

  /// Shows a text at once.
  void say(std::string_view label) {
    view_.state_.label = label;
    view_.compose();
    view_.skip("yield", [this] { view_.environment_.desktop.yield(); });
  }
  /// From here on there is nothing left to stop.
  void closeRun() { view_.work_ = Work::Files; }

private:
  JobViewPresenter& view_;
};

} // namespace qx
