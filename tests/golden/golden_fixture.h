// Whole rows as text, in a notation in which master data, jobs and expectations are written alike:
//
//   Bez1 Bez2          each column holds its own name, behind the prefix of the row if it has one
//   Status=11          the column holds this text; CR LF is written as " / "
//   Preistyp:3         the same without quotes: a number or truth value of a JSON file
//   - Konto BLZ        each column holds the empty text
//   ~ Bez3             each column is null after all
//   A=1 | B=2          two lines in one
//   --                 the next row begins
//
// A column that is not named is null. A later line overrides an earlier one, so that a row is said as another
// one and what differs.
#pragma once

#include "engine/import_job_object2.h"
#include "support/fake_desktop.h"
#include "support/test_erp.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// A customer as others left it, in every column; to be filled with the prefix "M_".
inline constexpr const char* storedCustomer = R"(
  Kundennummer=Kundennummer
  ÄndUser=Anna
  ÄndDatum=20200101000000
  Suchbegriff Bez1 Bez2 Bez3 Strasse Land PLZ Ort Telefon Telefax EMail Versandart Kundengruppe
  VertreterNr1 VertreterNr2 VertreterNr3
  AnteilVertreter1=21
  AnteilVertreter2=22
  AnteilVertreter3=23
  Zahlungsart ZahlungsbedSchl Konto KontoNummer Bankleitzahl Kreditinstitut KundengruppenShop
  AendStatShop=24
  VS_KdNr VS_AdrNr RG_KdNr RG_AdrNr Hauptkonto Preisliste
  Preistyp=25
  KundeSeit=01.02.2003
  KundeVerlorenAm=02.03.2004
  GrundVerloren GrundVerlorenSchl UstIdentNr Provisionsgruppe Klassifizierung
  Auftragsrabatt=26
  FremdLiefNr
  KostID=27
  Valutabehandlung=28
  Valutatage=29
  MwSt_KZ=M_MwSt_KZ
  Ind_Text1
  Ind_Text2=M_Ind_Text2
  Ind_Text3=M_Ind_Text3
  Ind_Text4
  Ind_Zahl1=31
  Ind_Zahl2=32
  Ind_Zahl3=33
  Ind_Zahl4=34
  Ind_Memo1 Ind_Memo2 SprachKZ
  AnzAN=41
  AnzAB=42
  AnzLS=43
  AnzVE=44
  AnzRG=45
  AnzGS=46
  KopftextAN KopftextAB KopftextLS KopftextRG KopftextGS
  KZDivers=1
  Liefersperre=1
  Kreditlimit1=47
  Kreditlimit2=48
  Währung=M_Währung
)";

class GoldenTest : public ::testing::Test {
protected:
  using Row = std::map<std::string, std::string>;

  GoldenTest();

  /// Adds rows of master data to a table.
  void fill(std::string_view table, std::string_view notation, std::string_view prefix = "");
  /// Stages one job from a JSON file as the program does.
  void stage(std::string_view type, std::string_view notation,
             const std::vector<std::string_view>& positions = {});
  /// Sets columns of the staged job for which no property exists.
  void setStaged(std::string_view notation);
  void run(bool unevaluated = false) {
    ASSERT_TRUE(engine.ProcessJobs(unevaluated, qxProcessState::ProcessAll));
  }

  /// Every row of a table, a line for each column that is not null, by name. Keys of protocols are left out.
  std::string rows(std::string_view table);
  /// The rows that the notation describes, in the form of `rows`; `changes`, without the prefix, override
  /// those of the last row.
  static std::string expected(std::string_view notation, std::string_view prefix = "",
                              std::string_view changes = "");
  Connection& connection() { return *erp.environment.connection; }

  TestErp erp;
  RecordingEvents events;
  ImportJobObject2 engine{environmentWithClerk()};
  Subscription subscription;

private:
  /// The user of the session is a clerk with a booking circle of his own.
  Environment& environmentWithClerk();
  static void overlay(Row& row, const std::string& line, std::string_view prefix);
  static std::vector<Row> parsed(std::string_view notation, std::string_view prefix);
  static std::string text(const std::vector<Row>& rows);
};

} // namespace qx
