// The ports to the user's desktop.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qx {

enum class MessageIcon : std::uint8_t { None, Information, Exclamation, Critical };

/// The default title of message boxes.
inline constexpr std::string_view defaultTitle = "Quorvex Import";

struct Message {
  std::string text;
  std::string title{defaultTitle};
  MessageIcon icon = MessageIcon::None;
};

/// What a file is chosen for.
enum class FileUse : std::uint8_t { Reading, Writing };

/// Message boxes, questions and the message loop. An unattended desktop logs the text and gives the safe
/// answer.
class Desktop {
public:
  virtual ~Desktop() = default;
  /// Shows a text with one button and returns when it is closed.
  virtual void show(const Message& message) = 0;
  /// A yes-no question; the safe answer is no.
  virtual bool ask(const Message& message) = 0;
  /// The chosen file, or null. `filter` as in "EDI (*.edi)|*.edi".
  virtual std::optional<std::string> chooseFile(std::string_view title, std::string_view filter,
                                                FileUse use) = 0;
  /// Runs the message loop. Called only between units of work.
  virtual void yield() = 0;
};

/// Opens and closes the window that shows the staged jobs.
class JobView {
public:
  virtual ~JobView() = default;
  virtual void open() = 0;
  virtual void close() = 0;
};

} // namespace qx
