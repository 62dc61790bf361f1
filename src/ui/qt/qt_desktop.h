// The user's desktop: message boxes, questions and file choice.
#pragma once

#include "platform/database.h"
#include "platform/desktop.h"
#include "platform/system.h"
#include "ui/deletion_question.h"

#include <QObject>
#include <QString>

#include <deque>
#include <memory>

namespace qx {

/// Shows boxes above the active window.
///
/// While a unit of work is open on the watched connection, no box may hold up the database: messages wait
/// until the unit has ended; questions are answered with no and reported to the diagnostics. Needs a
/// `QApplication`.
class QtDesktop final : public Desktop {
public:
  /// `diagnostics` must outlive the desktop.
  explicit QtDesktop(Diagnostics& diagnostics) : diagnostics_(diagnostics) {}

  /// Sets the connection whose units of work boxes wait for.
  void watch(const std::shared_ptr<Connection>& connection) { connection_ = connection; }

  void show(const Message& message) override;
  bool ask(const Message& message) override;
  /// Asks for confirmation before an existing file is chosen for writing; a name without suffix gets that of
  /// the filter.
  std::optional<std::string> chooseFile(std::string_view title, std::string_view filter,
                                        FileUse use) override;
  /// Shows the held-back messages and handles pending events.
  void yield() override;

private:
  bool unitIsOpen() const;
  void showKept();

  Diagnostics& diagnostics_;
  std::weak_ptr<Connection> connection_;
  std::deque<Message> kept_;
  QString folder_;  ///< of the file chosen last
  QObject context_; ///< cancels pending calls when the desktop is destroyed
};

/// The question before a deletion, with a button to save the jobs first; no is proposed.
std::optional<DeletionAnswer> askDeletionInBox(const Message& question);

} // namespace qx
