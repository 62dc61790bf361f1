// The desktop and the job view of a program without windows.
#pragma once

#include "platform/desktop.h"
#include "platform/system.h"

#include <ostream>

namespace qx {

/// Writes every box as one line "title: text" and reports it to the diagnostics. Questions are answered with
/// no and no file is ever chosen, so that a run never waits for a user.
class ConsoleDesktop final : public Desktop {
public:
  /// `output` is the program's standard error; both must outlive the desktop.
  ConsoleDesktop(std::ostream& output, Diagnostics& diagnostics)
      : output_(output), diagnostics_(diagnostics) {}

  void show(const Message& message) override;
  bool ask(const Message& message) override;
  std::optional<std::string> chooseFile(std::string_view title, std::string_view filter,
                                        FileUse use) override;
  void yield() override {}

private:
  void write(std::string_view title, std::string_view text);

  std::ostream& output_;
  Diagnostics& diagnostics_;
};

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
