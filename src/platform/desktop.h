// What the component asks of the user's desktop.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qx {

enum class MessageIcon : std::uint8_t { None, Information, Exclamation, Critical };

/// The title of boxes for which none is given.
inline constexpr std::string_view defaultTitle = "Quorvex Import";

struct Message {
  std::string text;
  std::string title{defaultTitle};
  MessageIcon icon = MessageIcon::None;
};

/// Message boxes, questions and the message loop. An unattended desktop writes the text down and answers with
/// the safe choice.
class Desktop {
public:
  virtual ~Desktop() = default;
  /// Shows a text with one button and returns when it was read.
  virtual void show(const Message& message) = 0;
  /// A yes-no question; the safe answer is no.
  virtual bool ask(const Message& message) = 0;
  /// The chosen file, or null. `filter` as in "EDI (*.edi)|*.edi".
  virtual std::optional<std::string> chooseFile(std::string_view title, std::string_view filter,
                                                bool forWriting) = 0;
  /// Lets the message loop run. Called between units of work only.
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
