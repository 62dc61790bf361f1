// The pane of the main window that lists what holds up the jobs.
#pragma once

#include "ui/job_causes.h"

#include <QWidget>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

class QPushButton;
class QTableWidget;

namespace qx {

/// Causes with their numbers of jobs. A click or Enter on one limits the list to its jobs, on the same one
/// again shows all.
class CausesPane final : public QWidget {
public:
  using Choose = std::function<void(std::optional<std::size_t> cause)>;

  CausesPane(Choose choose, QWidget* parent);

  void show(const std::vector<JobCause>& causes, std::optional<std::size_t> chosen);

protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  void choose(int row);

  Choose choose_;
  QTableWidget* table_;
  QPushButton* all_;
  std::vector<std::string> texts_;
  std::vector<std::size_t> counts_;
  std::optional<std::size_t> chosen_;
};

} // namespace qx
