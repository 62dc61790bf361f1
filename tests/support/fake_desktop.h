// Fakes of the user's desktop, the job window and the observers of a run.
#pragma once

#include "platform/desktop.h"
#include "platform/engine_events.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// Keeps every box and answers as the test says.
class RecordingDesktop final : public Desktop {
public:
  void show(const Message& message) override { shown.push_back(message); }
  bool ask(const Message& message) override {
    asked.push_back(message);
    return answer;
  }
  std::optional<std::string> chooseFile(std::string_view title, std::string_view filter,
                                        FileUse use) override {
    choices.push_back({std::string(title), std::string(filter), use});
    return file;
  }
  void yield() override {
    ++yields;
    if (onYield) onYield();
  }
  /// The texts of the boxes shown, one a line.
  std::string texts() const;

  struct Choice {
    std::string title;
    std::string filter;
    FileUse use = FileUse::Reading;
  };
  std::vector<Message> shown;
  std::vector<Message> asked;
  std::vector<Choice> choices;
  int yields = 0;

  bool answer = false;             ///< to every question
  std::optional<std::string> file; ///< the file chosen
  std::function<void()> onYield;   ///< what the message loop does
};

/// Records the calls of the window.
class RecordingJobView final : public JobView {
public:
  void open() override {
    ++opened;
    isOpen = true;
  }
  void close() override {
    ++closed;
    isOpen = false;
  }

  int opened = 0;
  int closed = 0;
  bool isOpen = false;
};

/// Keeps every event of the engine, each kind in order of arrival.
class RecordingEvents final : public EngineEvents {
public:
  void JobViewUnload() override { ++unloads; }
  void ProcessProgress(std::int16_t percent) override { progress.push_back(percent); }
  void ProcessInfo(std::string_view info) override {
    infos.emplace_back(info);
    if (onInfo) onInfo(info);
  }

  int unloads = 0;
  std::vector<std::int16_t> progress;
  std::vector<std::string> infos;
  std::function<void(std::string_view)> onInfo; ///< runs inside the event; may raise
};

} // namespace qx
