#include "ui/position_details.h"

#include "ui/position_grid.h"

#include <array>

namespace qx {
namespace {

constexpr std::array goodsControls{
    ControlSpec{"txtPositionsnummer", "&Position", ControlKind::Number, "Positionsnummer"},
    ControlSpec{"txtArtikelnummer", "&Artikelnummer", ControlKind::Text, "Artikelnummer", "imgArtikelnummer",
                "cmdArtikelnummer", "Artikelauskunft", "lblArtikelnummer"},
    ControlSpec{"tdbnbrMenge", "&Menge", ControlKind::Number, "Menge", "imgMenge"},
    ControlSpec{"tdbMengeneinheit", "&Einheit", ControlKind::Combo, "Mengeneinheit", "imgMengeneinheit"},
    ControlSpec{"txtArtikellangtext", "&Langtext", ControlKind::Note, "Artikellangtext"},
};

constexpr std::array priceControls{
    ControlSpec{"tdbnbrPreis", "P&reis", ControlKind::Money, "Preis", "imgPreis"},
    ControlSpec{"tdbnbrPreiseinheit", "Preis gilt &für", ControlKind::Number, "Preiseinheit"},
    ControlSpec{"tdbnbrRabatt", "Ra&batt (%)", ControlKind::Number, "Rabatt"},
    ControlSpec{"tdbnbrKostID", "&Kostenzuordnung", ControlKind::Number, "KostID", "imgKostID"},
};

constexpr std::array positionDeliveryControls{
    ControlSpec{"chkLieferbereit", "L&ieferbereit", ControlKind::Check, "Lieferbereit"},
    ControlSpec{"chkFakturierbereit", "Fak&turierbereit", ControlKind::Check, "Fakturierbereit"},
    ControlSpec{"tdbnbrAuslieferungsmenge", "A&uslieferungsmenge", ControlKind::Number, "Auslieferungsmenge"},
    ControlSpec{"tdbnbrFakturiermenge", "Fakturiermen&ge", ControlKind::Number, "Fakturiermenge"},
    ControlSpec{"tdbdtLiefertermin", "Liefertermi&n", ControlKind::Date, "Liefertermin"},
};

constexpr std::array positionGroups{ControlGroup{"Ware", goodsControls},
                                    ControlGroup{"Preis und Kosten", priceControls},
                                    ControlGroup{"Lieferung", positionDeliveryControls}};

} // namespace

PositionDetails::PositionDetails(PositionGrid& grid, std::size_t row, bool readOnly)
    : grid_(grid), row_(row) {
  build(true);
  ComboFiller units(contentOf("tdbMengeneinheit"));
  units.setRowSource(grid.units());
  units.hideColumn(1);
  show();
  markSaved();
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
  for (const Mark& each :
       {Mark{"txtArtikelnummer", "AR"},
        Mark{"tdbnbrMenge", grid_.finding(row_, "ME") != nullptr ? "ME" : "LB"},
        Mark{"tdbMengeneinheit", "EH"}, Mark{"tdbnbrPreis", "PR"}, Mark{"tdbnbrKostID", "KO"}}) {
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
