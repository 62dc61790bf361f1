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

GridColumnKind columnKind(ControlKind kind) {
  switch (kind) {
  case ControlKind::Number:
    return GridColumnKind::Number;
  case ControlKind::Date:
    return GridColumnKind::Date;
  case ControlKind::Check:
    return GridColumnKind::Check;
  case ControlKind::Note:
    return GridColumnKind::LongText;
  case ControlKind::Text:
  case ControlKind::Combo:
  case ControlKind::List:
    break;
  }
  return GridColumnKind::Text;
}

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
  for (std::size_t place = 0; place < specs().size(); ++place) {
    const ControlSpec& spec = *specs()[place];
    if (!refused_.contains(place))
      at(spec.name).text = grid_.value(row_, ColumnName(spec.column), columnKind(spec.kind));
  }
  select("tdbMengeneinheit");
  at("txtArtikelnummer").description = grid_.articleText(row_);
  struct Place {
    std::string_view control;
    std::string_view code;
  };
  for (const Place& place : {Place{"txtArtikelnummer", "AR"}, Place{"tdbnbrMenge", "LB"},
                             Place{"tdbnbrPreis", "PR"}, Place{"tdbnbrKostID", "KO"}}) {
    if (const ListedFinding* found = grid_.finding(row_, place.code))
      mark(place.control, found->found.severity, found->text());
    else
      mark(place.control, CheckStatus::Clean);
  }
  for (const auto& [place, reason] : refused_) mark(specs()[place]->name, CheckStatus::Error, reason);
}

void PositionDetails::leave(std::size_t place) {
  const ControlSpec& spec = *specs()[place];
  std::string reason =
      grid_.setValue(row_, ColumnName(spec.column), columnKind(spec.kind), control(place).text);
  if (reason.empty()) {
    dropRefused(place);
    return;
  }
  refused_[place] = std::move(reason);
  show();
}

std::optional<std::size_t> PositionDetails::refused() const {
  return refused_.empty() ? std::nullopt : std::optional(refused_.begin()->first);
}

void PositionDetails::dropRefused(std::size_t place) {
  if (refused_.erase(place) > 0) mark(specs()[place]->name, CheckStatus::Clean);
  show();
}

bool PositionDetails::lookUp(std::size_t place) {
  if (specs()[place]->lookup.empty() || !grid_.chooseArticle(row_)) return false;
  dropRefused(place);
  return true;
}

} // namespace qx
