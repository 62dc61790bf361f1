// Whole rows that a script stages by the names of the properties.
#include "automation_fixture.h"

namespace qx::automation {
namespace {

class StagedRows : public AutomationTest {
protected:
  /// Sets every property of the class but its keys and codes to a value of its own: texts to their name,
  /// numbers to their place, truth values to true.
  static void fill(const ObjectPointer& entry, const ClassTable& table) {
    double place = 100;
    for (const Member& member : table.members()) {
      const MemberDescription& it = member.description;
      place += 1;
      if (!it.writable || it.name == "JobType" || it.name == "JobID" || it.name == "ChildID") continue;
      if (it.type.kind == TypeKind::Text)
        put(*entry, it.name, it.name);
      else if (it.type.kind == TypeKind::Boolean)
        put(*entry, it.name, true);
      else
        put(*entry, it.name, place + (it.type.kind == TypeKind::Double ? 0.5 : 0));
    }
  }
  /// "column=value" of a table's only row, without nulls.
  std::string row(std::string_view table) {
    const auto found =
        table == "ImportKopf" ? open("Select * From ImportKopf"_sql) : open("Select * From ImportPos"_sql);
    std::string all;
    for (std::size_t i = 0; i < found->fieldCount(); ++i)
      if (!found->value(i).isNull())
        all += std::string(found->fieldName(i)) + "=" + found->value(i).text() + "\n";
    found->moveNext();
    EXPECT_TRUE(found->eof());
    return all;
  }
};

std::string named(std::string_view columns) {
  std::string all;
  std::istringstream words{std::string(columns)};
  for (std::string word; words >> word;)
    all += word + (word.find('=') == std::string::npos ? "=" + word : "") + "\n";
  return all;
}

/// Both texts have the same lines, in any order.
void expectSameLines(const std::string& actual, const std::string& expected) {
  const auto sorted = [](const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    std::sort(lines.begin(), lines.end());
    return lines;
  };
  EXPECT_EQ(sorted(actual), sorted(expected));
}

constexpr std::string_view sharedColumns =
    "Kundennummer Suchbegriff Bez1 Bez2 Bez3 Strasse Land PLZ Ort Telefon Telefax EMail Kundengruppe "
    "Vertreter1 Vertreter2 Vertreter3 Zahlungsart Konto BLZ Kreditinstitut Bemerkung Vertragsnummer "
    "Zahlungsweise Währung WährungEingabe Fehlertext Betreff Versandart ZahlungsbedSchl Provisionsgruppe "
    "UstIdentNr IndFild1 IndFild2 IndFild3 VS_KdNr VS_AdrNr RG_KdNr RG_AdrNr Hauptkonto VS_Bez1 VS_Bez2 "
    "VS_Bez3 VS_Straße=VS_Strasse VS_Land VS_PLZ VS_Ort RG_Bez1 RG_Bez2 RG_Bez3 RG_Straße=RG_Strasse "
    "RG_Land RG_PLZ RG_Ort Eingangsdatum ImportType=10 ";

} // namespace

TEST_F(StagedRows, OfACustomerHoldEveryProperty) {
  const ObjectPointer job = create("Kunde");
  fill(job, ClassOf<Kunde>::table());
  put(*job, "JobID", "J1");
  EXPECT_EQ(called(job, "AddItem"), "Empty");
  expectSameLines(row("ImportKopf"),
                  named(std::string(sharedColumns) +
                        "JobID=J1 JobType=10 Status=105 IndFild4 Preisliste Preistyp=163 KundeSeit "
                        "KundeVerlorenAm GrundVerloren GrundVerlorenSchl"));
}

TEST_F(StagedRows, OfAnOrderAndItsPositionHoldEveryProperty) {
  const ObjectPointer order = create("Auftrag");
  fill(order, ClassOf<Auftrag>::table());
  put(*order, "JobType", 40 - 10);
  const std::string key = textOf(get(*order, "JobID"));
  EXPECT_EQ(called(order, "AddItem"), "Empty");
  expectSameLines(row("ImportKopf"), named(std::string(sharedColumns) + "JobID=" + key +
                                           " JobType=30 Status=105 Liefertermin KostID=163"));

  const ObjectPointer position = create("AuftragsPos");
  EXPECT_EQ(read(position, "JobID"), "'" + key + "'");
  fill(position, ClassOf<AuftragsPos>::table());
  put(*position, "ChildID", "C1");
  EXPECT_EQ(called(position, "AddItem"), "Empty");
  expectSameLines(row("ImportPos"),
                  named("JobID=" + key +
                        " ChildID=C1 JobType=50 Positionsnummer=106 Artikelnummer Menge=108.5 Preis=110.5 "
                        "Artikellangtext Auslieferungsmenge=112.5 Fakturiermenge=113.5 Lieferbereit=1 "
                        "Fakturierbereit=1 Mengeneinheit Rabatt=117.5 Preiseinheit=118.5 Liefertermin "
                        "KostID=120"));
}

TEST_F(StagedRows, OfAContractHoldEveryPropertyThatIsStored) {
  const ObjectPointer job = create("Vertrag");
  fill(job, ClassOf<Vertrag>::table());
  put(*job, "JobID", "V1");
  put(*job, "Vertragsende", DateTime{makeDate(2027, 3, 31)});
  EXPECT_EQ(called(job, "AddItem"), "Empty");
  expectSameLines(
      row("ImportKopf"),
      named("JobID=V1 JobType=20 ImportType=10 Status=105 Eingangsdatum Kundennummer Vertragsnummer "
            "Artikelnummer Vertragsart Zustand Vertragstext Vertragsdatum Vertragsbeginn "
            "Vertragsende=31.03.2027 Intervall=118 Menge=119.5 Preis=120.5 Fehlertext Bemerkung IndFild1 "
            "IndFild2= IndFild3= IndFild4= VS_KdNr GekuendigtAm GrundVerlorenSchl"));
}

TEST_F(StagedRows, OfAJobInMemoryHoldItsPositions) {
  const ObjectPointer store = create("ImportJobObject");
  put(*store, "ActiveConnection", erp.file);
  ASSERT_EQ(called(store, "ConnectDB"), "True");
  const ObjectPointer job = create("ImportJob");
  for (const auto& [property, value] :
       std::vector<std::pair<std::string_view, Variant>>{{"JobID", "J1"},
                                                         {"JobType", 10},
                                                         {"Status", "10"},
                                                         {"Eingagsdatum", DateTime{makeDate(2006, 2, 1)}},
                                                         {"AdresseAendernJN", "Wahr"},
                                                         {"Währung", "EUR"},
                                                         {"VS_Strasse", "nicht in dieser Version"}})
    put(*job, property, value);
  const ObjectPointer position = objectIn(job, "SubItem");
  for (const auto& [property, value] :
       std::vector<std::pair<std::string_view, Variant>>{{"JobID", "J1"},
                                                         {"ChildID", "P1"},
                                                         {"JobType", 1001},
                                                         {"Positionsnummer", 3.0},
                                                         {"Artikelnummer", 4711},
                                                         {"Menge", "2,5"},
                                                         {"Preis", Money::ofTenThousandths(99900)}})
    put(*position, property, value);
  EXPECT_EQ(called(job, "AddSubItem"), "True");
  EXPECT_EQ(called(store, "StoreItemToDB", {job}), "True");
  const std::string header = row("ImportKopf");
  for (const std::string_view line :
       {"JobID=J1\n", "JobType=10\n", "Status=10\n", "Eingangsdatum=01.02.2006\n", "AdresseAendernJN=1\n",
        "Währung=EUR\n", "Kundennummer=\n"})
    EXPECT_NE(header.find(line), std::string::npos) << line;
  EXPECT_EQ(header.find("VS_Straße"), std::string::npos);
  expectSameLines(row("ImportPos"), named("JobID=J1 ChildID=P1 JobType=1001 Positionsnummer=3 Vertragsart= "
                                          "Artikelnummer=4711 Menge=2.5 Preis=9.99"));
}

} // namespace qx::automation
