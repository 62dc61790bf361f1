#include "ui/position_grid.h"

#include "model/german_text.h"
#include "model/text.h"
#include "platform/failure.h"
#include "ui/counted.h"
#include "ui/lookup_bridge.h"
#include "ui/position_details.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>
#include <limits>
#include <new>
#include <utility>

namespace qx {
namespace {

using Kind = GridColumnKind;

constexpr std::array positionColumns{
    GridColumn{.name = "Status", .caption = "Status", .kind = Kind::Picture},
    GridColumn{.name = "Artikelnummer", .caption = "Artikelnummer", .editable = true},
    GridColumn{.name = "Menge", .caption = "Menge", .kind = Kind::Number, .editable = true},
    GridColumn{.name = "Mengeneinheit", .caption = "Einheit", .kind = Kind::Unit, .editable = true},
    GridColumn{.name = "Preis", .caption = "Preis", .kind = Kind::Money, .editable = true},
    GridColumn{.name = "Preis2", .caption = "2. Preis", .kind = Kind::Money, .customerSpecific = true},
    GridColumn{.name = "Lieferbereit", .caption = "Lieferbereit", .kind = Kind::Check, .editable = true},
    GridColumn{
        .name = "Fakturierbereit", .caption = "Fakturierbereit", .kind = Kind::Check, .editable = true},
    GridColumn{.name = "Details", .caption = "Details", .kind = Kind::Button},
    GridColumn{
        .name = "Artikellangtext", .caption = "Artikellangtext", .kind = Kind::LongText, .editable = true},
    GridColumn{.name = "Auslieferungsmenge",
               .caption = "Auslieferungsmenge",
               .kind = Kind::Number,
               .editable = true},
    GridColumn{.name = "Fakturiermenge", .caption = "Fakturiermenge", .kind = Kind::Number, .editable = true},
    GridColumn{.name = "Liefertermin", .caption = "Liefertermin", .kind = Kind::Date, .editable = true},
    GridColumn{.name = "JobID", .caption = "JobID", .hidden = true},
    GridColumn{.name = "ChildID", .caption = "ChildID", .hidden = true},
};

constexpr ColumnName positionNumber = "Positionsnummer";
constexpr ColumnName costNumber = "KostID";
/// The codes of a position's findings.
constexpr std::array<std::string_view, 6> positionCodes{"AR", "ME", "EH", "PR", "LB", "KO"};

/// Where the clerk mends a finding.
struct CodeColumn {
  std::string_view code;
  std::string_view column;
};
constexpr std::array codeColumns{CodeColumn{"AR", "Artikelnummer"}, CodeColumn{"ME", "Menge"},
                                 CodeColumn{"EH", "Mengeneinheit"}, CodeColumn{"PR", "Preis"},
                                 CodeColumn{"LB", "Menge"},         CodeColumn{"KO", "Details"}};

double numberOf(const Value& value) { return value.number().value_or(0); }

std::string twoDecimals(const Value& value) {
  return value.isNull() ? std::string() : germanDecimals(numberOf(value), 2);
}

std::string readyNote(const std::string& article, std::string_view flag) {
  return "Achtung: ''" + article + "'' ist nicht auf " + std::string(flag) + " gesetzt.";
}

} // namespace

std::span<const GridColumn> PositionGrid::columns() const { return positionColumns; }

void PositionGrid::load(std::string_view jobId, StagedRows positions, ComboRows units,
                        PositionContext context) {
  jobId_ = jobId;
  positions_ = std::move(positions);
  stored_ = positions_;
  units_ = std::move(units);
  context_ = std::move(context);
  prices_.emplace(environment_);
  found_.clear();
  added_.clear();
  unchecked_.clear();
  failed_.clear();
  for (std::size_t row = 0; row < positions_.size(); ++row) unchecked_.insert(childOf(row));
}

void PositionGrid::setCustomer(std::string_view customer) {
  if (context_.customer == customer) return;
  context_.customer = customer;
  for (std::size_t row = 0; row < positions_.size(); ++row) unchecked_.insert(childOf(row));
}

void PositionGrid::checkMore(std::size_t count) {
  for (std::size_t row = 0; row < positions_.size() && count > 0 && !unchecked_.empty(); ++row) {
    if (!unchecked_.contains(childOf(row))) continue;
    checkRow(row);
    --count;
  }
  // What remains are keys of rows that no longer exist.
  if (count > 0) unchecked_.clear();
}

void PositionGrid::checkRow(std::size_t row) {
  const std::string child = childOf(row);
  unchecked_.erase(child);
  failed_.erase(child);
  found_.erase(child);
  if (added_.contains(child)) propose(row);
  const JobFields position = fieldsOf(positions_, row);
  OrderFacts order(environment_, *prices_, context_.customer, context_.date);
  PositionFacts& facts = order.of(position);
  // A missing component is a finding, not an outstanding check.
  if (trapped(environment_.diagnostics, {"price component", jobId_}, [this] { prices_->get(); }))
    facts.failPrice();
  // A failing check does not prevent the others. In reverse order, since findings of equal severity are
  // listed as they arrive and the article should come first.
  const auto rules = positionRules();
  for (std::size_t i = rules.size(); i-- > 0;) {
    const PositionRule& rule = rules[i];
    try {
      findings_.report(rule.broken(master_, position, facts), rule.rules, customerSpecific(),
                       positionOf(position));
    } catch (const std::exception& error) {
      failed_.insert(child);
      failure_ = germanCause(error);
      if (told_.insert(error.what()).second)
        environment_.diagnostics.report({"check of a position", error.what(), jobId_});
    }
  }
  trapped(
      environment_.diagnostics, {"check of a position", jobId_}, [&] { checkEntry(row, facts); },
      [&](const std::exception& error) {
        failed_.insert(child);
        failure_ = germanCause(error);
      });
  if (const auto price = facts.knownPrice()) found_[child] = *price;
  if (added_.contains(child)) proposePrice(row);
}

/// What a clerk may have left out or mistyped; a run goes on with its own assumption.
void PositionGrid::checkEntry(std::size_t row, PositionFacts& facts) {
  const JobFields position = fieldsOf(positions_, row);
  const auto report = [&](bool fine, Finding finding) {
    findings_.report(fine, std::move(finding).at(positionOf(position)));
  };
  report(!positions_.at(row, "Menge").isNull(), Finding(Rule::OrderQuantityMissing));
  const std::string typed = positions_.at(row, "Mengeneinheit").text();
  const auto isKnown = [&](const std::array<std::string, 2>& unit) {
    return equalCodes(unit[1], typed) || equalCodes(unit[1], facts.unit());
  };
  // Without a list of units there is nothing to compare with.
  const bool known = typed.empty() || units_.rows.empty() || std::ranges::any_of(units_.rows, isKnown);
  report(known, Finding(Rule::OrderUnitUnlisted, typed));
}

/// The unit of a position that the clerk adds is its article's until another one is typed.
void PositionGrid::propose(std::size_t row) {
  const std::string article = positions_.at(row, "Artikelnummer").text();
  if (article.empty() || !positions_.at(row, "Mengeneinheit").isNull()) return;
  trapped(environment_.diagnostics, {"unit of an article", jobId_}, [&] {
    const std::string unit = Stock(environment_).baseUnit(article);
    if (!unit.empty()) positions_.set(row, "Mengeneinheit", Value(unit));
  });
}

/// Its price is the found one.
void PositionGrid::proposePrice(std::size_t row) {
  const auto found = found_.find(childOf(row));
  if (found == found_.end() || !positions_.at(row, "Preis").isNull()) return;
  positions_.set(row, "Preis", Value(found->second));
  findings_.report(true, Finding(Rule::OrderPriceDiffers).at(positionOf(fieldsOf(positions_, row))));
}

bool PositionGrid::isDifferent(std::size_t row) const {
  const ListedFinding* price = finding(row, "PR");
  return found_.contains(childOf(row)) && price != nullptr && price->found.rule == Rule::OrderPriceDiffers;
}

bool PositionGrid::takeFound(std::size_t row) {
  if (context_.readOnly || !isDifferent(row)) return false;
  return setValue(row, "Preis", ControlKind::Money, germanNumber(found_.at(childOf(row)))).empty();
}

std::size_t PositionGrid::foundLeft() const {
  std::size_t left = 0;
  for (std::size_t row = 0; !context_.readOnly && row < positions_.size(); ++row)
    if (isDifferent(row)) ++left;
  return left;
}

std::optional<std::size_t> PositionGrid::columnOf(std::string_view code) const {
  const auto* const place = std::ranges::find(codeColumns, code, &CodeColumn::code);
  if (place == codeColumns.end()) return std::nullopt;
  const auto* const column = std::ranges::find(positionColumns, place->column, &GridColumn::name);
  return static_cast<std::size_t>(column - positionColumns.begin());
}

void PositionGrid::checkCount() { findings_.report(positions_.size() > 0, Finding(Rule::OrderNoPositions)); }

GridCell PositionGrid::cell(std::size_t row, std::size_t column) const {
  const GridColumn& spec = positionColumns[column];
  if (spec.kind == Kind::Picture) return statusCell(row);
  if (spec.kind == Kind::Button) return {.message = "Alle Angaben der Position", .bitmap = "BUTTON"};
  if (spec.kind == Kind::Check) return readyCell(row, spec.name);
  if (spec.name == "Preis") return priceCell(row);
  if (spec.name == "Preis2") return foundPriceCell(row);
  if (spec.name == "Artikelnummer") return articleCell(row);
  return {.text = value(row, ColumnName(spec.name), editorOf(spec.kind))};
}

GridCell PositionGrid::statusCell(std::size_t row) const {
  GridCell cell;
  cell.severity = findings_.statusOf(childOf(row));
  cell.message = messages(row);
  if (cell.severity == CheckStatus::Error)
    cell.bitmap = "ERROR";
  else if (cell.severity == CheckStatus::Warning)
    cell.bitmap = "WARNING";
  else
    cell.bitmap = context_.readOnly ? "PROCESSED" : "PROCESSING";
  return cell;
}

GridCell PositionGrid::priceCell(std::size_t row) const {
  GridCell cell;
  cell.text = twoDecimals(positions_.at(row, "Preis"));
  if (found_.contains(childOf(row)) && finding(row, "PR") != nullptr) {
    cell.severity = CheckStatus::Warning;
    cell.message = "Preis weicht ab.";
  }
  return cell;
}

GridCell PositionGrid::foundPriceCell(std::size_t row) const {
  const auto found = found_.find(childOf(row));
  return {.text = found == found_.end() ? std::string() : germanDecimals(found->second, 2)};
}

GridCell PositionGrid::readyCell(std::size_t row, std::string_view flag) const {
  GridCell cell;
  cell.text = value(row, ColumnName(flag), ControlKind::Check);
  if (cell.text != "1") cell.message = readyNote(positions_.at(row, "Artikelnummer").text(), flag);
  return cell;
}

GridCell PositionGrid::articleCell(std::size_t row) const {
  GridCell cell;
  cell.text = positions_.at(row, "Artikelnummer").text();
  if (const ListedFinding* found = finding(row, "AR")) {
    cell.message = found->text();
    cell.severity = found->found.severity;
  }
  return cell;
}

std::string PositionGrid::editText(std::size_t row, std::size_t column) const {
  const GridColumn& spec = positionColumns[column];
  return spec.editable ? value(row, ColumnName(spec.name), editorOf(spec.kind)) : std::string();
}

std::string PositionGrid::value(std::size_t row, ColumnName column, ControlKind kind) const {
  return editedText(kind, positions_.at(row, column));
}

std::optional<std::size_t> PositionGrid::rowOf(std::string_view item) const {
  for (std::size_t row = 0; row < positions_.size(); ++row)
    if (positions_.at(row, "ChildID").textView() == item) return row;
  return std::nullopt;
}

std::string PositionGrid::rowLabel(std::size_t row) const {
  return positions_.at(row, "Positionsnummer").text();
}

std::string PositionGrid::summary() const {
  double sum = 0;
  for (std::size_t row = 0; row < positions_.size(); ++row) {
    const double unit = numberOf(positions_.at(row, "Preiseinheit"));
    sum += numberOf(positions_.at(row, "Menge")) * numberOf(positions_.at(row, "Preis")) /
           (unit == 0 ? 1 : unit);
  }
  return counted(whole(positions_.size()), "Position", "Positionen") + ", Summe " + groupedSum(sum);
}

std::string PositionGrid::set(std::size_t row, ColumnName column, ControlKind kind, std::string_view text) {
  const Value before = positions_.at(row, column);
  const std::string typed(kind == ControlKind::Note ? text : trimBlanks(text));
  Value value = typed.empty() ? Value::null() : Value(respelt(kind, typed));
  std::string reason = isNumeric(kind) ? readNumber(row, column, typed, value) : refusalOf(kind, typed);
  if (!reason.empty()) return reason;
  if (kind == ControlKind::Check) value = Value(parseGermanBoolean(typed).value_or(false));
  positions_.set(row, column, std::move(value));
  // Quantities that were to be delivered or invoiced in full follow.
  if (column == "Menge")
    for (const ColumnName follower : {ColumnName("Auslieferungsmenge"), ColumnName("Fakturiermenge")})
      if (positions_.at(row, follower).number() == before.number())
        positions_.set(row, follower, positions_.at(row, column));
  return {};
}

std::string PositionGrid::readNumber(std::size_t row, ColumnName column, const std::string& typed,
                                     Value& value) const {
  if (typed.empty()) return column == positionNumber ? "Eine Position braucht eine Nummer." : "";
  const auto number = parseEnteredNumber(typed);
  std::string reason = number ? refusal(row, column, *number) : "";
  if (reason.empty()) reason = refusalOf(ControlKind::Number, typed);
  if (!reason.empty()) return reason;
  if (column == positionNumber)
    value = Value(germanNumber(*number));
  else if (column == costNumber)
    value = Value(static_cast<std::int64_t>(*number));
  else
    value = Value(*number);
  return {};
}

std::string PositionGrid::refusal(std::size_t row, ColumnName column, double number) const {
  const bool whole = number == std::trunc(number);
  if (column == costNumber && (!whole || number < 0 || number > std::numeric_limits<std::int32_t>::max()))
    return "Eine Kostenzuordnung ist eine ganze Zahl bis 2147483647.";
  if (column == positionNumber) {
    if (!whole || number < 1 || number > std::numeric_limits<std::int16_t>::max())
      return "Eine Positionsnummer ist eine ganze Zahl von 1 bis 32767.";
    for (std::size_t other = 0; other < positions_.size(); ++other)
      if (other != row && positions_.at(other, column).integer() == static_cast<std::int64_t>(number))
        return "Die Positionsnummer " + germanNumber(number) + " gibt es in diesem Auftrag schon.";
  }
  return {};
}

std::string PositionGrid::edit(std::size_t row, std::size_t column, std::string_view text) {
  const GridColumn& spec = positionColumns[column];
  if (!spec.editable) return "Diese Spalte kann nicht geändert werden.";
  return setValue(row, ColumnName(spec.name), editorOf(spec.kind), text);
}

std::string PositionGrid::setValue(std::size_t row, ColumnName column, ControlKind kind,
                                   std::string_view text) {
  if (context_.readOnly) return "Der Vorgang kann nicht mehr geändert werden.";
  std::string refused = set(row, column, kind, text);
  if (!refused.empty()) return refused;
  checkRow(row);
  return {};
}

bool PositionGrid::lookUp(std::size_t row, std::size_t column) {
  return positionColumns[column].name == "Artikelnummer" && chooseArticle(row);
}

bool PositionGrid::chooseArticle(std::size_t row) {
  if (context_.readOnly) return false;
  const std::vector<std::string> chosen = lookups_.open("Artikelauskunft");
  return !chosen.empty() && setValue(row, "Artikelnummer", ControlKind::Text, chosen.front()).empty();
}

std::string PositionGrid::articleText(std::size_t row) const {
  try {
    return master_.masterData.GetArtikelbezeichnung(positions_.at(row, "Artikelnummer").text());
  } catch (const std::exception& error) {
    environment_.diagnostics.report({"text of an article", error.what(), jobId_});
    return {};
  }
}

std::string PositionGrid::messages(std::size_t row) const {
  std::string lines;
  for (const std::string_view code : positionCodes)
    if (const ListedFinding* found = finding(row, code)) lines += (lines.empty() ? "" : "\n") + found->text();
  return lines;
}

std::unique_ptr<Form> PositionGrid::details(std::size_t row) {
  return std::make_unique<PositionDetails>(*this, row, context_.readOnly);
}

std::size_t PositionGrid::addRow() {
  std::int64_t last = 0;
  for (std::size_t row = 0; row < positions_.size(); ++row)
    last = std::max(last, positions_.at(row, "Positionsnummer").integer().value_or(0));
  const std::size_t row = positions_.add();
  positions_.set(row, "JobID", Value(jobId_));
  positions_.set(row, "ChildID", Value(newJobKey(environment_)));
  positions_.set(row, "JobType", Value(std::int16_t{qxtJobAuftragsPos}));
  positions_.set(row, "Positionsnummer", Value(std::to_string(last + 1)));
  positions_.set(row, "Lieferbereit", Value(context_.ready.Lieferbereit));
  positions_.set(row, "Fakturierbereit", Value(context_.ready.Fakturierbereit));
  added_.insert(childOf(row));
  checkCount();
  return row;
}

void PositionGrid::removeRow(std::size_t row) {
  const std::string child = childOf(row);
  findings_.clearItem(child);
  unchecked_.erase(child);
  failed_.erase(child);
  found_.erase(child);
  added_.erase(child);
  positions_.remove(row);
  checkCount();
}

std::string PositionGrid::paste(std::size_t row, std::size_t column, std::string_view text) {
  std::vector<std::size_t> targets;
  for (std::size_t i = column; i < positionColumns.size(); ++i)
    if (positionColumns[i].editable && (customerSpecific() || !positionColumns[i].customerSpecific))
      targets.push_back(i);
  std::string refused;
  while (!text.empty()) {
    std::string_view line = takeLine(text);
    if (row == positions_.size()) addRow();
    for (const std::size_t target : targets) {
      const auto tab = line.find('\t');
      const GridColumn& spec = positionColumns[target];
      const std::string reason = set(row, ColumnName(spec.name), editorOf(spec.kind), line.substr(0, tab));
      if (!reason.empty())
        refused += "Position " + rowLabel(row) + ", " + std::string(spec.caption) + ": " + reason + "\n";
      if (tab == std::string_view::npos) break;
      line.remove_prefix(tab + 1);
    }
    unchecked_.insert(childOf(row));
    ++row;
  }
  return refused;
}

} // namespace qx
