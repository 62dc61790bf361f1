#include "ui/position_details.h"

#include "ui/position_grid.h"

#include <array>

namespace qx {
namespace {

constexpr std::array goodsControls{
    ControlSpec{.name = "txtPositionsnummer",
                .caption = "&Position",
                .kind = ControlKind::Number,
                .column = "Positionsnummer"},
    ControlSpec{.name = "txtArtikelnummer",
                .caption = "&Artikelnummer",
                .column = "Artikelnummer",
                .picture = "imgArtikelnummer",
                .button = "cmdArtikelnummer",
                .lookup = "Artikelauskunft",
                .description = "lblArtikelnummer"},
    ControlSpec{.name = "tdbnbrMenge",
                .caption = "&Menge",
                .kind = ControlKind::Number,
                .column = "Menge",
                .picture = "imgMenge"},
    ControlSpec{.name = "tdbMengeneinheit",
                .caption = "&Einheit",
                .kind = ControlKind::Combo,
                .column = "Mengeneinheit"},
    ControlSpec{.name = "txtArtikellangtext",
                .caption = "&Langtext",
                .kind = ControlKind::Note,
                .column = "Artikellangtext"},
};

constexpr std::array priceControls{
    ControlSpec{.name = "tdbnbrPreis",
                .caption = "P&reis",
                .kind = ControlKind::Number,
                .column = "Preis",
                .picture = "imgPreis"},
    ControlSpec{.name = "tdbnbrPreiseinheit",
                .caption = "Preis gilt &für",
                .kind = ControlKind::Number,
                .column = "Preiseinheit"},
    ControlSpec{
        .name = "tdbnbrRabatt", .caption = "Ra&batt (%)", .kind = ControlKind::Number, .column = "Rabatt"},
    ControlSpec{.name = "tdbnbrKostID",
                .caption = "&Kostenzuordnung",
                .kind = ControlKind::Number,
                .column = "KostID",
                .picture = "imgKostID"},
};

constexpr std::array deliveryControls{
    ControlSpec{.name = "chkLieferbereit",
                .caption = "L&ieferbereit",
                .kind = ControlKind::Check,
                .column = "Lieferbereit"},
    ControlSpec{.name = "chkFakturierbereit",
                .caption = "Fak&turierbereit",
                .kind = ControlKind::Check,
                .column = "Fakturierbereit"},
    ControlSpec{.name = "tdbnbrAuslieferungsmenge",
                .caption = "A&uslieferungsmenge",
                .kind = ControlKind::Number,
                .column = "Auslieferungsmenge"},
    ControlSpec{.name = "tdbnbrFakturiermenge",
                .caption = "Fakturiermen&ge",
                .kind = ControlKind::Number,
                .column = "Fakturiermenge"},
    ControlSpec{.name = "tdbdtLiefertermin",
                .caption = "Liefertermi&n",
                .kind = ControlKind::Date,
                .column = "Liefertermin"},
};

constexpr std::array positionGroups{ControlGroup{"Ware", goodsControls},
                                    ControlGroup{"Preis und Kosten", priceControls},
                                    ControlGroup{"Lieferung", deliveryControls}};

} // namespace

PositionDetails::PositionDetails(PositionGrid& grid, std::size_t row, bool readOnly)
    : grid_(grid), row_(row) {
  build(true);
  ComboFiller units(contentOf("tdbMengeneinheit"));
  units.setRowSource(grid.units());
  units.hideColumn(1);
  show();
  settle();
  setReadOnly(readOnly);
}

std::span<const ControlGroup> PositionDetails::groups() const { return positionGroups; }

void PositionDetails::show() {
  for (std::size_t index = 0; index < specs().size(); ++index) {
    const ControlSpec& spec = *specs()[index];
    if (!refused_.contains(index)) at(spec.name).text = grid_.value(row_, ColumnName(spec.column), spec.kind);
  }
  select("tdbMengeneinheit");
  at("txtArtikelnummer").description = grid_.articleText(row_);
  struct Mark {
    std::string_view control;
    std::string_view code;
  };
  for (const Mark& each : {Mark{"txtArtikelnummer", "AR"}, Mark{"tdbnbrMenge", "LB"},
                           Mark{"tdbnbrPreis", "PR"}, Mark{"tdbnbrKostID", "KO"}}) {
    if (const ListedFinding* found = grid_.finding(row_, each.code))
      mark(each.control, found->found.severity, found->text());
    else
      mark(each.control, CheckStatus::Clean);
  }
  for (const auto& [index, reason] : refused_) mark(specs()[index]->name, CheckStatus::Error, reason);
}

void PositionDetails::leave(std::size_t index) {
  const ControlSpec& spec = *specs()[index];
  std::string reason = grid_.setValue(row_, ColumnName(spec.column), spec.kind, control(index).text);
  if (reason.empty()) {
    dropRefused(index);
    return;
  }
  refused_[index] = std::move(reason);
  show();
}

std::optional<std::size_t> PositionDetails::refused() const {
  return refused_.empty() ? std::nullopt : std::optional(refused_.begin()->first);
}

void PositionDetails::dropRefused(std::size_t index) {
  if (refused_.erase(index) > 0) mark(specs()[index]->name, CheckStatus::Clean);
  show();
}

bool PositionDetails::lookUp(std::size_t index) {
  if (specs()[index]->lookup.empty() || !grid_.chooseArticle(row_)) return false;
  dropRefused(index);
  return true;
}

} // namespace qx
