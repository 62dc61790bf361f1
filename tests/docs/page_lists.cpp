// Prints the lists that the pages take from the tables of the code, each behind a line "=== NAME".
// The pages hold them between "<!-- list: NAME -->" and "<!-- end -->"; a list named after a file is that
// file.
#include "adapters/sql/dialect.h"
#include "adapters/sql/select_parts.h"
#include "adapters/sql/translation.h"
#include "automation_lists.h"
#include "cli/property_terms.h"
#include "cli/stage_fault.h"
#include "engine/finding_terms.h"
#include "erp/lookups/lookup_sources.h"
#include "erp/schema.h"
#include "erp/schema_table.h"
#include "model/entry_records.h"
#include "model/import_job.h"
#include "model/required_properties.h"
#include "model/text.h"
#include "sender_advice.h"
#include "settings/option_terms.h"
#include "settings/options.h"
#include "store/job_lines.h"
#include "store/version1_rows.h"
#include "ui/options_dialog_presenter.h"

#include <algorithm>
#include <iostream>
#include <ranges>
#include <string>
#include <string_view>
#include <vector>

namespace qx {
namespace {

using Names = std::vector<std::string_view>;

/// `IndFild1` and `IndFild2`: the same but for the number at the end, which is one higher.
bool follows(std::string_view name, std::string_view before) {
  return name.size() == before.size() &&
         name.substr(0, name.size() - 1) == before.substr(0, name.size() - 1) &&
         name.back() == before.back() + 1 && before.back() >= '0' && name.back() <= '9';
}

/// In one line, or with numbered names drawn together.
std::string joined(const Names& names, bool drawTogether) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    std::size_t last = i;
    while (drawTogether && last + 1 < names.size() && follows(names[last + 1], names[last])) ++last;
    text += (text.empty() ? "`" : ", `") + std::string(names[i]) + "`";
    if (last > i) text += "-`" + std::string(names[last]) + "`";
    i = last;
  }
  return text;
}

void printFaults() {
  std::cout << "=== faults\n\n| code | meaning |\n|---|---|\n";
  for (const cli::FaultTerm& term : cli::faultTerms())
    std::cout << "| `" << term.code << "` | " << term.meaning << " |\n";
  std::cout << '\n';
}

void printFaultRemedies() {
  std::cout << "=== refusals of a file\n\n| code | what is wrong | what to do |\n|---|---|---|\n";
  for (const cli::FaultTerm& term : cli::faultTerms())
    std::cout << "| `" << term.code << "` | " << term.meaning << " | " << term.remedy << " |\n";
  std::cout << '\n';
}

/// Every finding that programs meet; others are shown by dialogs only.
void printFindingAdvice() {
  std::cout << "=== refusals of a run\n\n| code | severity | field | what to do |\n|---|---|---|---|\n";
  for (const RuleTerms& row : allTerms()) {
    if (!row.counts) continue;
    const char* severity = row.severity == CheckStatus::Error     ? "error"
                           : row.severity == CheckStatus::Warning ? "warning"
                                                                  : "hint";
    std::cout << "| `" << row.code << "` | " << severity << " | " << row.field << " | "
              << wordOf(adviceOn(row.rule)) << " |\n";
  }
  std::cout << '\n';
}

/// What a sender has to know of each property.
template <class Table>
void printTerms(std::string_view title, ObjectKind kind, const Table& table) {
  std::cout << "=== " << title << "\n\n| property | meaning | unit | codes in |\n|---|---|---|---|\n";
  const auto required = requiredProperties(kind);
  for (const auto& field : table) {
    const cli::PropertyTerm& term = cli::propertyTerm(kind, field.name);
    const bool needed = std::ranges::find(required, field.name) != required.end();
    std::cout << "| `" << term.name << (needed ? "` (needed) | " : "` | ") << term.meaning << " | "
              << term.unit << " | " << term.codes << " |\n";
  }
  std::cout << '\n';
}

template <class Table>
void printProperties(std::string_view title, const Table& table) {
  struct Kind {
    FieldKind kind;
    std::string_view caption;
  };
  std::cout << "=== " << title << "\n\n| value | properties |\n|---|---|\n";
  for (const auto& [kind, caption] :
       {Kind{FieldKind::Text, "text"}, Kind{FieldKind::Date, "date"}, Kind{FieldKind::Int16, "16-bit number"},
        Kind{FieldKind::Int32, "32-bit number"}, Kind{FieldKind::Double, "number"},
        Kind{FieldKind::Boolean, "truth value"}}) {
    Names names;
    for (const auto& field : table)
      if (field.kind == kind) names.push_back(field.name);
    if (!names.empty()) std::cout << "| " << caption << " | " << joined(names, true) << " |\n";
  }
  Names dropped;
  for (const auto& field : table)
    if (!field.stored()) dropped.push_back(field.name);
  if (!dropped.empty()) std::cout << "\nTaken but not stored: " << joined(dropped, true) << ".\n";
  std::cout << '\n';
}

template <class Line>
void printLine(std::string_view what, const Line& line) {
  std::cout << "| " << what << " | " << line.size() << " | " << joined({line.begin(), line.end()}, false)
            << " |\n";
}

/// The columns of the fields of a line.
template <class Table, class Order>
Names columnsOf(const Table& table, const Order& order) {
  Names names;
  for (const std::size_t place : order) names.push_back(table.at(place).column);
  return names;
}

void printJobFileLines() {
  std::cout << "=== lines of version 2\n\n| kind, codes | fields | in order |\n|---|---|---|\n";
  printLine("customer, 10-13", customerLine);
  printLine("contract, 20-23, 40-43", contractLine);
  printLine("order, 30-33", orderLine);
  printLine("position, 50", positionLine);
  std::cout << "\n=== lines of version 1\n\n| line, first field | fields | in order |\n|---|---|---|\n";
  printLine("job, its code", columnsOf(importJobFields, version1HeaderOrder));
  printLine("position, 1001", columnsOf(importJobSubItemFields, version1PositionOrder));
  std::cout << '\n';
}

template <class Table, class Line>
void printLosses(std::string_view job, const Table& table, const Line& line) {
  const auto property = [&](std::string_view name) {
    const auto found = std::ranges::find(table, name, &Table::value_type::name);
    return found != table.end() && found->stored();
  };
  Names missing;
  Names dropped;
  for (const auto& field : table)
    if (field.stored() && std::ranges::find(line, field.name) == line.end()) missing.push_back(field.name);
  for (const std::string_view name : line)
    if (!property(name)) dropped.push_back(name);
  std::cout << "| " << job << " | " << joined(missing, true) << " | " << joined(dropped, true) << " |\n";
}

void printWhatDoesNotTravel() {
  std::cout
      << "=== what does not travel\n\n| job | not in the file | in the file, dropped when it is read |\n"
         "|---|---|---|\n";
  printLosses("customer", kundeFields, customerLine);
  printLosses("contract", vertragFields, contractLine);
  printLosses("order", auftragFields, orderLine);
  printLosses("position of an order", auftragsPosFields, positionLine);
  std::cout << '\n';
}

void printLookups() {
  std::cout << "=== lookups\n\n| record source | table | searched |\n|---|---|---|\n";
  for (const erp::LookupSource& source : erp::lookupSources())
    std::cout << "| `" << source.name << "` | `" << source.table << "` | "
              << joined({source.searched.begin(), source.searched.end()}, false) << " |\n";
  std::cout << '\n';
}

std::string plain(std::string_view caption) {
  std::string text(caption);
  std::erase(text, '&');
  if (text.ends_with(':')) text.pop_back();
  return text;
}

void printOptions() {
  std::cout << "=== options\n\n| section | option | value | meaning | in the options dialog "
               "|\n|---|---|---|---|---|\n";
  for (const OptionSpec* option : allOptions()) {
    std::cout << "| `" << option->section << "` | `" << option->key << "` | " << allowedValues(*option);
    if (!option->fallback.empty()) std::cout << ", unset `" << option->fallback << '`';
    if (option->isLocal()) std::cout << ", local";
    std::cout << " | " << option->english << " | " << plain(option->caption) << " |\n";
  }
  std::cout << '\n';
}

/// Those that only the program sets.
void printHiddenOptions() {
  std::cout << "=== Weitere Einstellungen\n\n| Bereich | Einstellung | Bedeutung |\n|---|---|---|\n";
  for (const OptionSpec* option : allOptions())
    if (option->control.empty())
      std::cout << "| `" << option->section << "` | `" << option->key << "` | " << option->german << " |\n";
  std::cout << '\n';
}

/// As the clerk reads them beside the controls.
void printOptionHints(bool customerSpecific) {
  std::cout << "=== " << (customerSpecific ? "Kundenspezifische Werte" : "Optionen")
            << "\n\n| Option | Wirkung |\n|---|---|\n";
  for (const OptionGroup& group : optionGroups()) {
    if (group.customerSpecific != customerSpecific) continue;
    std::cout << "| **" << group.caption << "** | |\n";
    for (const OptionSpec* option : group.options)
      std::cout << "| " << plain(option->caption) << " | " << option->german << " |\n";
  }
  std::cout << '\n';
}

std::string inCell(const RuleTerms& row, std::string_view pattern) {
  const std::string text = oneLine(withoutValues(row, pattern));
  return text.empty() ? text : "`" + text + "`";
}

/// The rules of one kind of job, in the order of the table.
void printRules(std::string_view title, std::string_view kind) {
  std::cout << "=== " << title
            << "\n\n| Text der Verarbeitung | Kürzel, Text im Fenster | Art | Feld | Was Sie tun | Code "
               "|\n|---|---|---|---|---|---|\n";
  for (const RuleTerms& row : allTerms()) {
    if (!row.code.starts_with(kind)) continue;
    const char* severity = row.severity == CheckStatus::Error     ? "Fehler"
                           : row.severity == CheckStatus::Warning ? "Warnung"
                                                                  : "Hinweis";
    const std::string shown = inCell(row, row.dialog.text);
    std::cout << "| " << inCell(row, row.run) << " | " << row.dialog.code
              << (shown.empty() ? "" : " " + shown) << " | " << severity << " | " << row.field << " | "
              << row.remedy << (row.note.empty() ? "" : " ") << row.note << " | " << row.code << " |\n";
  }
  std::cout << '\n';
}

void printTables() {
  std::cout << "=== tables\n\n| group | tables |\n|---|---|\n";
  const auto row = [](std::string_view group, std::span<const erp::SchemaTable> tables) {
    Names names;
    for (const erp::SchemaTable& table : tables) names.push_back(table.name);
    std::cout << "| " << group << " | " << joined(names, false) << " |\n";
  };
  row("staging", erp::stagingTables());
  row("customers and contracts", erp::customerTables());
  row("orders", erp::orderTables());
  row("components", erp::componentTables());
  row("handover", erp::handoverTables());
  std::cout << '\n';
}

/// A statement with each column of its table on a line.
void printStatement(const Sql& statement) {
  const std::string text = relational::translate(statement, relational::sqlServerDialect);
  const auto open = text.find(" (");
  if (!text.starts_with("CREATE TABLE")) {
    std::cout << text << ";\n";
    return;
  }
  std::cout << text.substr(0, open) << " (";
  std::string_view separator = "\n  ";
  for (const std::string_view term :
       relational::listTerms(std::string_view(text).substr(open + 2, text.size() - open - 3))) {
    std::cout << separator << term;
    separator = ",\n  ";
  }
  std::cout << "\n);\n";
}

void printSqlServerScript() {
  std::cout
      << "=== docs/schema-sqlserver.sql\n"
         "-- The tables of the component on SQL Server, as \"qximportjob init\" creates them there.\n"
         "-- Printed from the program's own description; scripts/pages.sh --renew brings it up to date.\n";
  for (const erp::SchemaTable& table : erp::schemaTables()) {
    printStatement(erp::createTable(table, table.name));
    for (const erp::SchemaIndex& index : table.indexes) printStatement(erp::createIndex(table, index));
  }
  std::cout << "INSERT INTO [Schemastand] ([Version]) VALUES (" << erp::schemaVersion << ");\n";
}

} // namespace
} // namespace qx

int main() {
  using namespace qx;
  printProperties("Kunde", kundeFields);
  printProperties("Auftrag", auftragFields);
  printProperties("Vertrag", vertragFields);
  printProperties("AuftragsPos", auftragsPosFields);
  printProperties("ImportJobSubItem", importJobSubItemFields);
  printTerms("Customer properties", ObjectKind::Customer, kundeFields);
  printTerms("Order properties", ObjectKind::Order, auftragFields);
  printTerms("Order position properties", ObjectKind::OrderPosition, auftragsPosFields);
  printTerms("Contract properties", ObjectKind::Contract, vertragFields);
  printTerms("Contract position properties", ObjectKind::ContractPosition, importJobSubItemFields);
  printFaults();
  printFaultRemedies();
  printFindingAdvice();
  printJobFileLines();
  printWhatDoesNotTravel();
  printOptions();
  printOptionHints(false);
  printOptionHints(true);
  printHiddenOptions();
  printRules("Befunde jedes Vorgangs", "job.");
  printRules("Befunde eines Kunden", "customer.");
  printRules("Befunde eines Vertrags", "contract.");
  printRules("Befunde eines Auftrags", "order.");
  printTables();
  printLookups();
  printAutomationLists();
  printSqlServerScript();
}
