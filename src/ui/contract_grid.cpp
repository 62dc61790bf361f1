#include "ui/contract_grid.h"

#include "model/german_text.h"
#include "ui/counted.h"

#include <array>

namespace qx {
namespace {

constexpr std::array contractGridColumns{
    GridColumn{.name = "Status", .caption = "Status", .kind = GridColumnKind::Picture},
    GridColumn{.name = "Zustand", .caption = "Zustand"},
    GridColumn{.name = "Vertrag", .caption = "Vertrag"},
    GridColumn{.name = "Datum", .caption = "Datum", .kind = GridColumnKind::Date},
    GridColumn{.name = "Vertragstext", .caption = "Vertragstext"},
    GridColumn{.name = "Betrag", .caption = "Betrag", .kind = GridColumnKind::Money},
    GridColumn{.name = "Intervall", .caption = "Intervall", .kind = GridColumnKind::Number},
    GridColumn{.name = "EKnz", .caption = "EKnz"},
    GridColumn{.name = "JobID", .caption = "JobID", .hidden = true},
    GridColumn{.name = "ChildID", .caption = "ChildID", .hidden = true},
    GridColumn{.name = "Details", .caption = "Details", .kind = GridColumnKind::Button},
};

struct StateLook {
  std::string_view bitmap;
  std::string_view text;
};

/// Indexed by the result of `GetVertragsZustand`.
constexpr std::array<StateLook, 4> stateLooks{
    StateLook{"CONTRACT_NEW", "Neuer Vertrag"}, StateLook{"CONTRACT_ALTERED", "Geänderter Vertrag"},
    StateLook{"CONTRACT_DONE", "Unverändert"}, StateLook{"CONTRACT_DELETE", "Gelöschter Vertrag"}};

std::string stateText(const std::string& code) {
  if (code == "A") return "Aktiv";
  if (code == "I") return "nur Info";
  return code == "E" ? "Erledigt" : code;
}

} // namespace

std::span<const GridColumn> ContractGrid::columns() const { return contractGridColumns; }

void ContractGrid::load(const JobEditing& editing, const ImportJobObject2& engine,
                        std::string_view customer) {
  rows_.clear();
  for (const auto job = editing.contractsOf(customer); !job->eof(); job->moveNext()) {
    const auto text = [&](ColumnName column) { return job->hasField(column) ? job->text(column) : ""; };
    const std::int16_t state = engine.GetVertragsZustand(customer, text("Vertragsnummer"),
                                                         text("Artikelnummer"), text("Vertragsart"));
    const StateLook& look = stateLooks[static_cast<std::size_t>(state)];
    Row& row = rows_.emplace_back();
    row.job = {text("JobID"), jobCode(job->value("JobType"))};
    row.amount = job->value("Preis").number().value_or(0);
    GridCell picture;
    picture.bitmap = look.bitmap;
    picture.message = look.text;
    GridCell button;
    button.bitmap = "BUTTON";
    button.message = "Vertrag öffnen";
    row.cells = {picture,
                 {stateText(text("Zustand"))},
                 {text("Vertragsnummer")},
                 {text("Vertragsdatum")},
                 {text("Vertragstext")},
                 {germanDecimals(row.amount, 2)},
                 {text("Intervall")},
                 {row.job.jobType == qxtjobkundenverträgedone ? "E" : ""},
                 {row.job.jobId},
                 {},
                 button};
  }
}

GridCell ContractGrid::cell(std::size_t row, std::size_t column) const { return rows_[row].cells[column]; }

std::optional<std::size_t> ContractGrid::rowOf(std::string_view item) const {
  for (std::size_t row = 0; row < rows_.size(); ++row)
    if (rows_[row].job.jobId == item) return row;
  return std::nullopt;
}

std::string ContractGrid::summary() const {
  if (rows_.empty()) return "Zu diesem Kunden sind keine Verträge eingegangen.";
  double sum = 0;
  for (const Row& row : rows_) sum += row.amount;
  return counted(whole(rows_.size()), "Vertrag", "Verträge") + ", Summe " + groupedSum(sum);
}

JobReference ContractGrid::jobOf(std::size_t row) const { return rows_[row].job; }

} // namespace qx
