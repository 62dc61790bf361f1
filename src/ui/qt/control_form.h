// Builds the controls of a form and keeps them up to date.
#pragma once

#ifndef Q_MOC_RUN // it stumbles over the umlauts of the job codes
#include "platform/desktop.h"
#include "ui/form.h"
#endif

#include <QString>
#include <QWidget>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

class QGridLayout;
class QGroupBox;
class QHBoxLayout;
class QLabel;
class QToolButton;
class QVBoxLayout;

namespace qx {

class AccessKeys;
class ElidedLabel;

/// Builds a widget for each control of the form. When the clerk leaves one with a changed text, the text is
/// passed to the form and everything is shown again, except a control in which the clerk is typing.
class ControlForm final : public QWidget {
  Q_OBJECT

public:
  /// `boxTitle` is the title of the box with a picture's message. The form and the desktop must outlive the
  /// widget.
  /// Captions get their access keys from `keys`.
  ControlForm(Form& form, Desktop& desktop, std::string_view boxTitle, AccessKeys& keys);

  /// Shows the state of the form.
  void render();
  /// Passes on the text of a control that the clerk has not left yet.
  void commit();
  /// Sets the focus to a control. False when there is none of this name.
  bool focusControl(std::string_view name);
  /// Sets the control with the cursor to its stored value. False when there is none.
  bool takeCurrentMaster();
  /// Sets all controls to their stored values.
  void takeMasters();
  /// Adds a widget at the end of a group.
  void addBelow(std::size_t group, QWidget* widget);
  /// Arranges the groups in as many columns as fit into a width.
  void fitWidth(int width);

signals:
  /// Emitted when the form was changed and may have other findings.
  void edited();

protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;

private:
  struct Field {
    QWidget* editor = nullptr;
    QLabel* caption = nullptr; ///< null where the group or a check box has it
    QToolButton* calendar = nullptr;
    QToolButton* lookup = nullptr;
    QToolButton* picture = nullptr;
    QToolButton* master = nullptr;
    ElidedLabel* description = nullptr;
    QString shown; ///< the editor's content when last shown
  };
  struct Group {
    QGroupBox* box = nullptr;
    QGridLayout* rows = nullptr;
    std::vector<std::size_t> fields;
    int weight = 0; ///< its height in lines
  };

  void buildGroup(const ControlGroup& group);
  void buildField(QGridLayout& rows, std::size_t index, bool alone);
  void captionFields(AccessKeys& keys);
  QWidget* makeEditor(std::size_t index);
  void arrange(int columns);
  void orderTabs(const std::vector<std::vector<std::size_t>>& columns);
  QString content(std::size_t index) const;
  bool pending(std::size_t index) const { return content(index) != fields_[index].shown; }
  /// The editor's content as passed to the form.
  std::string typed(std::size_t index) const;
  void show(std::size_t index);
  void showEditor(std::size_t index);
  void showEnabled(QWidget& editor, bool enabled);
  void commitField(std::size_t index);
  void lookUp(std::size_t index);
  void takeMaster(std::size_t index);
  void openCalendar(std::size_t index);
  void showMessage(std::size_t index);

  Form& form_;
  Desktop& desktop_;
  std::string boxTitle_;
  std::vector<Field> fields_;
  std::vector<Group> groups_;
  QHBoxLayout* columns_;
  int columnCount_ = 0;
};

} // namespace qx
