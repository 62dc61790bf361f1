#include "floor/job_files.h"

#include <array>
#include <chrono>
#include <fstream>
#include <stdexcept>
#include <string_view>

namespace qx::bench {
namespace {

constexpr std::string_view banner = "\"Quorvex ImportJob V 2.0\";\r\n";
constexpr std::size_t keyPlace = 1;

/// The columns behind a customer's line.
constexpr std::array columns{"JobType",       "JobID",
                             "Bemerkung",     "Betreff",
                             "Bez1",          "Bez2",
                             "Bez3",          "BLZ",
                             "Eingangsdatum", "EMail",
                             "Fehlertext",    "Hauptkonto",
                             "Konto",         "Kreditinstitut",
                             "Kundengruppe",  "Kundennummer",
                             "Land",          "Ort",
                             "PLZ",           "Provisionsgruppe",
                             "RG_AdrNr",      "RG_Bez1",
                             "RG_Bez2",       "RG_Bez3",
                             "RG_KdNr",       "RG_Land",
                             "RG_Ort",        "RG_PLZ",
                             "RG_Straße",     "Status",
                             "Strasse",       "Suchbegriff",
                             "Telefax",       "Telefon",
                             "UstIdentNr",    "Versandart",
                             "Vertreter1",    "Vertreter2",
                             "Vertreter3",    "VS_AdrNr",
                             "VS_Bez1",       "VS_Bez2",
                             "VS_Bez3",       "VS_KdNr",
                             "VS_Land",       "VS_Ort",
                             "VS_PLZ",        "VS_Straße",
                             "Währung",       "WährungEingabe",
                             "Zahlungsart",   "ZahlungsbedSchl",
                             "Zahlungsweise", "ImportType",
                             "IndFild1",      "IndFild2",
                             "IndFild3"};

/// What a job gets that its line does not hold.
constexpr std::string_view startColumns = "Vertragsnummer, IndFild4, Preisliste, KundeSeit, KundeVerlorenAm, "
                                          "GrundVerloren, GrundVerlorenSchl, Preistyp";
constexpr std::string_view startValues = "'', '', '', '', '', '', '', 0";

std::string columnList() {
  std::string list;
  for (const std::string_view column : columns) {
    if (!list.empty()) list += ", ";
    list.append("\"").append(column).append("\"");
  }
  return list;
}

/// The sample jobs hold no character above U+00FF, whose numbers are those of the code page.
void appendCodePage(std::string& line, std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte < 0x80)
      line += text[i];
    else
      line += static_cast<char>((byte << 6U) | (static_cast<unsigned char>(text[++i]) & 0x3FU));
  }
}

void appendUtf8(std::string& text, std::string_view bytes) {
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      text += c;
    } else {
      text += static_cast<char>(0xC0U | (byte >> 6U));
      text += static_cast<char>(0x80U | (byte & 0x3FU));
    }
  }
}

/// Cuts a line into its values. The texts keep their memory from line to line.
void split(std::string_view line, std::array<std::string, columns.size()>& fields) {
  for (std::string& field : fields) {
    const std::size_t end = line.find("\";");
    if (line.empty() || line.front() != '"' || end == std::string_view::npos)
      throw std::runtime_error("a line has too few fields");
    field.clear();
    appendUtf8(field, line.substr(1, end - 1));
    line.remove_prefix(end + 2);
  }
}

/// Opens the unit of a group and ends it when it is large or old enough.
class Groups {
public:
  explicit Groups(Database& database)
      : begin_(database.prepare("BEGIN IMMEDIATE")), commit_(database.prepare("COMMIT")) {}

  void begin() {
    if (jobs_ > 0) return;
    begin_.run();
    begun_ = std::chrono::steady_clock::now();
  }
  void endJob() {
    constexpr int most = 100;
    constexpr std::chrono::milliseconds oldest{200};
    if (++jobs_ >= most || std::chrono::steady_clock::now() - begun_ >= oldest) finish();
  }
  void finish() {
    if (jobs_ > 0) commit_.run();
    jobs_ = 0;
  }

private:
  Statement begin_, commit_;
  int jobs_ = 0;
  std::chrono::steady_clock::time_point begun_;
};

} // namespace

void exportCustomers(Database& database, const std::string& file) {
  constexpr std::size_t full = std::size_t{256} * 1024;
  Statement rows = database.prepare("SELECT " + columnList() +
                                    " FROM ImportKopf ORDER BY substr(Eingangsdatum, 7, 4), "
                                    "substr(Eingangsdatum, 4, 2), substr(Eingangsdatum, 1, 2), rowid");
  std::ofstream out(file, std::ios::binary);
  std::string text(banner);
  while (rows.step()) {
    for (int i = 0; i < static_cast<int>(columns.size()); ++i) {
      text += '"';
      appendCodePage(text, rows.text(i));
      text += "\";";
    }
    text += "\r\n";
    if (text.size() < full) continue;
    out << text;
    text.clear();
  }
  out << text;
  out.close();
  if (!out) throw std::runtime_error("cannot write " + file);
}

void importCustomers(Database& database, const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  std::string line;
  if (!std::getline(in, line) || line + "\n" != banner) throw std::runtime_error(file + " is no job file");
  std::string places;
  for (std::size_t i = 0; i < columns.size(); ++i) places += ", ?";
  std::string insertText = "INSERT INTO ImportKopf (";
  insertText.append(startColumns).append(", ").append(columnList()).append(") VALUES (");
  Statement insert = database.prepare(insertText.append(startValues).append(places).append(")"));
  Statement find = database.prepare("SELECT rowid, * FROM ImportKopf WHERE JobID=?");
  Groups groups(database);
  std::array<std::string, columns.size()> fields;
  while (std::getline(in, line)) {
    split(line, fields);
    groups.begin();
    if (find.bind(1, fields[keyPlace]).step()) throw std::runtime_error("a job is there already");
    find.reset();
    int place = 0;
    for (const std::string& field : fields) insert.bind(++place, field);
    insert.run();
    groups.endJob();
  }
  groups.finish();
}

} // namespace qx::bench
