// The small dialogs of the job view: deleting by date, an error text, and the about box.
#pragma once

#include "engine/import_job_object2.h"
#include "ui/delete_by_date_presenter.h"
#include "ui/deletion_question.h"

#include <QDialog>

#include <string>
#include <string_view>

class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace qx {

/// `frmDeleteDate`: asks for a day and, after a question, deletes the done jobs received before it.
class DeleteDateWindow final : public QDialog {
public:
  /// Environment and engine must outlive the window. Without `ask` the environment's desktop asks.
  DeleteDateWindow(Environment& environment, ImportJobObject2& engine, QWidget* parent, AskDeletion ask);

  /// Asks, deletes with a wait cursor and closes; stays open when nothing was deleted.
  void accept() override;

private:
  DeleteByDatePresenter deletion_;
  QLineEdit* date_;
  QPushButton* remove_;
};

/// `frmError`: shows a text that can be searched, copied and printed.
class ErrorWindow final : public QDialog {
public:
  explicit ErrorWindow(std::string_view text, QWidget* parent = nullptr, std::string_view title = "Fehler");

private:
  /// Marks every place of the text that is looked for and goes to the next one.
  void find(const QString& text, bool fromHere);

  QPlainTextEdit* box_;
};

/// `frmAbout2`: the program and its ERP, and the system information on demand.
class AboutWindow final : public QDialog {
public:
  /// The environment must outlive the window. `schemaVersion` is that of the database's tables.
  AboutWindow(Environment& environment, std::string schemaVersion, QWidget* parent = nullptr);

private:
  std::string systemInformation();
  void showSystemInformation();

  Environment& environment_;
  std::string schemaVersion_;
};

} // namespace qx
