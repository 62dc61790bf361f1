// What a component inside a host shows, and where its diagnostics go.
#pragma once

#include "platform/desktop.h"
#include "platform/system.h"

namespace qx::com {

/// Boxes of the system over the host's active window.
class MessageBoxes final : public Desktop {
public:
  void show(const Message& message) override;
  bool ask(const Message& message) override;
  /// A host names its files itself.
  std::optional<std::string> chooseFile(std::string_view title, std::string_view filter,
                                        FileUse use) override;
  void yield() override;
};

/// The window of version 1, which there is not.
class MissingJobView final : public JobView {
public:
  explicit MissingJobView(Desktop& desktop) : desktop_(desktop) {}
  void open() override;
  void close() override {}

private:
  Desktop& desktop_;
};

/// A line for whoever listens to the host's debug output.
class DebuggerDiagnostics final : public Diagnostics {
public:
  void report(const Diagnostic& diagnostic) noexcept override;
};

} // namespace qx::com
