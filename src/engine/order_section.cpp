#include "engine/order_section.h"

#include "engine/order_failure.h"
#include "model/german_text.h"
#include "model/text.h"

#include <utility>

namespace qx {
namespace {

constexpr Section orders{"Auftrag", "Aufträge werden verarbeitet...", {qxtJobAufträge, 0}, "Kundennummer"};

/// Cash on delivery is announced for orders that weigh more than this.
constexpr double heavyWeight = 28;

Environment with(Diagnostics& diagnostics, const Environment& from) {
  return {from.components, from.desktop, from.jobView,  from.clock,      from.guids,   from.localSettings,
          from.iniFile,    diagnostics,  from.liveness, from.connection, from.session, from.currentOrder};
}

void addEntry(std::string& list, std::string_view entry, bool isFirst) {
  if (!isFirst) list += crlf;
  list += entry;
}

} // namespace

OrderSection::OrderSection(RunContext& run, PriceComponent& prices)
    : run_(run), prices_(prices), check_(run.environment, run.orderOptions),
      quiet_(with(silence_, run.environment)), foreseeingCheck_(quiet_, run.orderOptions),
      writer_(run, prices) {}

void OrderSection::run(SectionRunner& runner) {
  runner.run(orders,
             sql("Select * From ImportKopf Where JobType = "_sql, number(qxtJobAufträge),
                 " Order by Eingangsdatum"_sql),
             {[this](JobRow& job) { return processJob(job); },
              [this](JobRow& job, std::string_view reason) { return fail(job, reason); },
              [this](const JobRow& job) { foresee(job); },
              // Header and positions, articles, prices, conversions.
              4});
  announceMalformedFees();
}

void OrderSection::announceMalformedFees() const {
  const std::string& entries = writer_.fees().malformedEntries();
  if (entries.empty()) return;
  run_.environment.desktop.show(
      {"Die Datei Zubehoer.ini enthält fehlerhafte Einträge. Ihre Gebühren wurden nicht berechnet: " +
       entries});
}

/// Plain and accessory orders can be processed separately; one accessory article makes an accessory order.
bool OrderSection::leftOut(const JobRow& job) const {
  if (run_.selection == qxProcessState::ProcessAll) return false;
  const auto accessory = run_.environment.connection->open(
      sql("Select Case When Exists(Select 1 From ImportPos, Artikelstamm Where ImportPos.JobID = '"_sql,
          value(job.text("JobID")),
          "' And Artikelstamm.Artikelnummer = ImportPos.Artikelnummer And Artikelstamm.Erfassungsschema = "
          "'Zubehoer') "
          "Then 1 Else 0 End As found"_sql));
  const bool isAccessory = accessory->value(0).truth().value_or(false);
  return isAccessory != (run_.selection == qxProcessState::ProcessZubehör);
}

void OrderSection::foresee(const JobRow& job) {
  OrderFacts facts(run_.environment, prices_, fieldsOf(job));
  if (!run_.unevaluated) foreseeingCheck_.CheckAuftrag(job.text("JobID"), facts);
  writer_.foresee(job, facts);
}

JobResult OrderSection::processJob(JobRow& job) {
  if (leftOut(job)) return {.leftOut = true};
  OrderFacts facts(run_.environment, prices_, fieldsOf(job));
  auto [findings, refused] = evaluate(job, facts);
  if (refused) return std::move(*refused);
  try {
    // Pending until the order is written, so that text, order and done code are saved together.
    if (!findings.empty()) {
      std::string reasons = job.text("Fehlertext");
      appendLine(reasons, announced(findings));
      job.set("Fehlertext", Value(std::move(reasons)));
    }
    WrittenOrder order = writer_.WriteAuftrag(job, facts);
    if (order.cashOnDelivery && order.weight > heavyWeight)
      run_.group.afterCommit([this, number = std::to_string(order.number)] {
        std::string& list = run_.cashOnDelivery;
        list += (list.empty() ? "" : ", ") + number;
      });
    JobResult result = written(job, std::move(order));
    findings.append(std::move(result.findings));
    result.findings = std::move(findings);
    return result;
  } catch (const OrderFailure& failure) {
    job.reread();
    return fail(job, failure.what(), {failure.finding()});
  }
}

/// Warnings stop an order only in automatic mode; errors stop every order that the clerk has not released.
OrderSection::Verdict OrderSection::evaluate(JobRow& job, OrderFacts& facts) {
  if (run_.unevaluated) return {};
  const bool automatic = run_.options.automatic && !job.released();
  if (automatic && !job.value("Fehlertext").isEmpty()) {
    job.set("Fehlertext", Value(""));
    job.update();
  }
  Findings findings = check_.CheckAuftrag(job.text("JobID"), facts);
  const bool isError = findings.status() == CheckStatus::Error;
  if (!findings.empty() && (automatic || (isError && !job.released()))) {
    if (isError)
      run_.marks.markJobError(job, announced(findings));
    else
      JobMarks::markJobWarning(job, announced(findings));
    return {{}, refusedResult(job, isError ? statusError : statusWarning, std::move(findings))};
  }
  return {std::move(findings), std::nullopt};
}

JobResult OrderSection::fail(JobRow& job, std::string_view reason, Findings findings) {
  job.set("Fehler", Value(true));
  job.set("Erledigt", Value(false));
  run_.marks.markJobError(job, reason);
  return refusedResult(job, statusError, std::move(findings));
}

JobResult OrderSection::refusedResult(const JobRow& job, std::string_view status, Findings findings) const {
  JobResult result = SectionRunner::refused(orders, job, status, std::move(findings));
  try {
    result.line.articles = stagedArticles(job);
  } catch (const StatementError& error) {
    // The job is already marked; unreadable positions may be why it failed.
    run_.environment.diagnostics.report({"positions of an order", error.what(), job.text("JobID")});
  }
  return result;
}

JobResult OrderSection::written(const JobRow& job, WrittenOrder order) {
  JobResult result = SectionRunner::result(orders, job, statusDone);
  result.line.number = std::to_string(order.number);
  result.line.info = "Kundennummer: " + job.text("Kundennummer");
  appendLine(result.line.info, "Kunde: " + order.customerName);
  appendLine(result.line.info, "Eingangsdatum: " + job.text("Eingangsdatum"));
  ProtocolLine::Articles articles;
  bool isFirst = true;
  for (const WrittenLine& line : order.lines.lines) {
    addEntry(articles.numbers, line.article, isFirst);
    addEntry(articles.descriptions, line.description, isFirst);
    addEntry(articles.quantities, germanDecimals(line.quantity, 3), isFirst);
    addEntry(articles.prices, germanDecimals(line.price, 2), isFirst);
    isFirst = false;
  }
  result.line.articles = std::move(articles);
  result.addHints(std::move(order.hints));
  return result;
}

ProtocolLine::Articles OrderSection::stagedArticles(const JobRow& job) const {
  const auto positions = run_.environment.connection->open(
      sql("Select *, Cast(Positionsnummer as int) as intPos From ImportPos Where JobID ='"_sql,
          value(job.text("JobID")), "' Order By intPos"_sql));
  const MasterData masterData(run_.environment);
  ProtocolLine::Articles articles;
  for (bool isFirst = true; !positions->eof(); positions->moveNext(), isFirst = false) {
    const std::string article = positions->text("Artikelnummer");
    addEntry(articles.numbers, article, isFirst);
    addEntry(articles.descriptions, masterData.GetArtikelbezeichnung(article), isFirst);
    addEntry(articles.quantities, germanDecimals(positions->value("Menge").number().value_or(0), 3), isFirst);
    addEntry(articles.prices, germanDecimals(positions->value("Preis").number().value_or(0), 2), isFirst);
  }
  return articles;
}

} // namespace qx
