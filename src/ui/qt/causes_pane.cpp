#include "ui/qt/causes_pane.h"

#include "ui/counted.h"
#include "ui/qt/text.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace qx {
namespace {

QTableWidgetItem* causeCell(const QString& text, Qt::Alignment alignment, bool chosen) {
  auto* cell = new QTableWidgetItem(text);
  cell->setTextAlignment(alignment | Qt::AlignVCenter);
  cell->setToolTip(plainToolTip(text));
  QFont font = cell->font();
  font.setBold(chosen);
  cell->setFont(font);
  return cell;
}

} // namespace

CausesPane::CausesPane(Choose choose, QWidget* parent)
    : QWidget(parent), choose_(std::move(choose)), table_(new QTableWidget(0, 2, this)),
      all_(new QPushButton(QStringLiteral("Alle Vorgän&ge zeigen"), this)) {
  table_->setObjectName(QStringLiteral("lstUrsachen"));
  table_->setAccessibleName(QStringLiteral("Ursachen"));
  table_->setHorizontalHeaderLabels({QStringLiteral("Anzahl"), QStringLiteral("Ursache")});
  table_->horizontalHeader()->setStretchLastSection(true);
  table_->horizontalHeader()->setHighlightSections(false);
  table_->horizontalHeaderItem(0)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
  table_->horizontalHeaderItem(1)->setTextAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  table_->verticalHeader()->hide();
  table_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setSelectionMode(QAbstractItemView::SingleSelection);
  table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table_->setTabKeyNavigation(false);
  table_->setShowGrid(false);
  table_->setWordWrap(false);
  table_->setColumnWidth(0, fontMetrics().averageCharWidth() * 10);
  connect(table_, &QTableWidget::cellClicked, this, [this](int row, int /*column*/) { this->choose(row); });
  table_->installEventFilter(this);
  all_->setObjectName(QStringLiteral("cmdAlleUrsachen"));
  all_->setAutoDefault(false);
  connect(all_, &QPushButton::clicked, this, [this] { choose_(std::nullopt); });
  auto* caption = new QLabel(QStringLiteral("&Ursachen"), this);
  caption->setBuddy(table_);
  auto* head = new QHBoxLayout;
  head->addWidget(caption);
  head->addStretch(1);
  head->addWidget(all_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  layout->addLayout(head);
  layout->addWidget(table_);
}

/// Not by `activated`, which a double click raises after its two clicks.
bool CausesPane::eventFilter(QObject* watched, QEvent* event) {
  if (watched == table_ && event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    const bool pressed = key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space;
    if (pressed && table_->currentRow() >= 0) {
      choose(table_->currentRow());
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

void CausesPane::choose(int row) {
  const auto cause = static_cast<std::size_t>(row);
  choose_(chosen_ == cause ? std::nullopt : std::optional(cause));
}

void CausesPane::show(const std::vector<JobCause>& causes, std::optional<std::size_t> chosen) {
  std::vector<std::string> texts;
  std::vector<std::size_t> counts;
  for (const JobCause& cause : causes) {
    texts.push_back(cause.text);
    counts.push_back(cause.jobs.size());
  }
  all_->setVisible(chosen.has_value());
  if (texts == texts_ && counts == counts_ && chosen == chosen_) return;
  texts_ = std::move(texts);
  counts_ = std::move(counts);
  chosen_ = chosen;
  const int current = table_->currentRow();
  table_->setRowCount(static_cast<int>(texts_.size()));
  for (std::size_t i = 0; i < texts_.size(); ++i) {
    const int row = static_cast<int>(i);
    const bool bold = chosen_ == i;
    table_->setItem(row, 0, causeCell(toQt(grouped(whole(counts_[i]))), Qt::AlignRight, bold));
    table_->setItem(row, 1, causeCell(toQt(texts_[i]), Qt::AlignLeft, bold));
  }
  if (chosen_)
    table_->setCurrentCell(static_cast<int>(*chosen_), 1);
  else if (current >= table_->rowCount())
    table_->setCurrentCell(-1, -1);
}

} // namespace qx
