// The window in which a record of the ERP is looked up.
#pragma once

#include "erp/lookups/lookup_sources.h"
#include "platform/erp_components.h"
#include "platform/system.h"

#include <QAbstractTableModel>
#include <QDialog>
#include <QLineEdit>

#include <string>
#include <vector>

class QLabel;
class QPushButton;
class QTableView;

namespace qx {

/// The rows of a lookup read so far.
class LookupModel final : public QAbstractTableModel {
  Q_OBJECT

public:
  /// Both arguments must outlive the model.
  LookupModel(erp::LookupPages& pages, Diagnostics& diagnostics, QObject* parent);

  /// Starts listing the rows that a search finds.
  void search(const QString& text);
  const erp::LookupRow& row(int number) const { return rows_[static_cast<std::size_t>(number)]; }
  /// Why rows could not be read; empty without an error.
  const QString& failure() const { return failure_; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  bool canFetchMore(const QModelIndex& parent) const override;
  void fetchMore(const QModelIndex& parent) override;

signals:
  /// Emitted when rows were added or could not be read.
  void fetched();

private:
  /// Reads the next page; a failure is reported to the diagnostics and ends the list.
  erp::LookupPage nextPage();

  erp::LookupPages& pages_;
  Diagnostics& diagnostics_;
  std::string search_;
  std::vector<erp::LookupRow> rows_;
  std::optional<erp::LookupPosition> next_;
  QString failure_;
};

/// Search field, list and two buttons; the arrow keys move in the list from within the search field.
class LookupWindow final : public QDialog {
  Q_OBJECT

public:
  /// All references must outlive the window.
  LookupWindow(const LookupRequest& request, erp::LookupPages& pages, LocalSettings& settings,
               Diagnostics& diagnostics, QWidget* parent);

  /// The current row; null when the list is empty.
  const erp::LookupRow* current() const;

  void done(int result) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  void buildTable(const erp::LookupSource& source);
  void restoreSize();
  void saveSize();
  void showRows();
  void showState();

  LookupModel* model_;
  QLineEdit* search_;
  QTableView* table_;
  QLabel* hint_;
  QLabel* notice_;
  QPushButton* accept_ = nullptr;
  LocalSettings& settings_;
  Diagnostics& diagnostics_;
  std::string profile_;
};

/// Looks records up in the database of the standalone ERP.
class QtAuskunft final : public Auskunft {
public:
  /// Both arguments must outlive the object.
  QtAuskunft(LocalSettings& settings, Diagnostics& diagnostics)
      : settings_(settings), diagnostics_(diagnostics) {}

  /// Shows the window above the active one. Raises `std::runtime_error` for an unknown record source or
  /// result field, and without a database.
  std::vector<std::string> show(Session& session, const LookupRequest& request) override;

private:
  LocalSettings& settings_;
  Diagnostics& diagnostics_;
};

} // namespace qx
