// The window of the options dialog.
#pragma once

#include "ui/dialog_context.h"
#include "ui/options_dialog_presenter.h"

#include <QDialog>

#include <vector>

class QCheckBox;
class QFormLayout;
class QTabWidget;

namespace qx {

/// Every option with its object name. Escape and `cmdCancel` discard; `cmdOK` and the close box save.
class OptionsWindow final : public QDialog {
public:
  /// The environment outlives the window. `wait`: what is shown while another program holds the database.
  explicit OptionsWindow(Environment& environment, QWidget* parent = nullptr, WaitFactory wait = {});

  /// Escape: discards and closes.
  void reject() override;
  void accept() override;

protected:
  void closeEvent(QCloseEvent* event) override;

private:
  QWidget* makePage(bool customerSpecific);
  QWidget* makeGroup(const OptionGroup& group);
  void addCheck(const OptionSpec& option, const OptionField& field, QFormLayout& layout);
  void addText(const OptionSpec& option, const OptionField& field, QFormLayout& layout);
  /// Shows every check box as the presenter holds it.
  void render();
  void showWrongControl();

  WaitFactory wait_;
  OptionsDialogPresenter dialog_;
  QTabWidget* tabs_;
  std::vector<QCheckBox*> checks_;
};

} // namespace qx
