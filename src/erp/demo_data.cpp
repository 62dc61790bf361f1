#include "erp/demo_data.h"

#include "erp/demo_company.h"
#include "erp/table_filler.h"

#include <array>

namespace qx::erp {
namespace {

/// Automatic checks are on, missing groups and banks are created, missing reps and payment methods are not,
/// so that the staged jobs show every outcome. Options of the customer-specific mode and the rule for cost
/// assignments are set too, but have no effect until the mode or the check is switched on.
void fillOptions(Connection& connection) {
  TableFiller options(connection, "Einstellungen");
  options.add({{"Section", "Kostenzuordnung"}, {"Key", "Kundenauftrag"}, {"Value", "1"}});
  for (const auto& [key, setting] : {std::array<std::string_view, 2>{"AppSettings", "1"},
                                     {"Löschen", "1"},
                                     {"Ändern", "1"},
                                     {"AutomatischVerarbeiten", "1"},
                                     {"KundeAdressProof", "1"},
                                     {"KundenKundengruppe", "1"},
                                     {"KundenBankleitzahl", "1"},
                                     {"KundenVertreter", "0"},
                                     {"KundenZahlungsart", "0"},
                                     {"WarnungLagerbestand", "1"},
                                     {"KreditlimitAuftrag", "1"},
                                     {"KostenzuordnungAuftrag", "0"},
                                     {"ZAVSRG", "RE"},
                                     {"ZAKunde", "NN"},
                                     {"VAKunde", "EX"},
                                     {"abGewicht", "31,5"},
                                     {"VSabGewicht", "SP"},
                                     {"FrachtTransport", "FRACHT"},
                                     {"FrachtGebuehr", "GEBUEHR"},
                                     {"MinGebuehr", "4,50"}})
    options.add({{"Section", "ImportJob2"}, {"Key", key}, {"Value", setting}});
}

void fillStaff(Connection& connection) {
  TableFiller staff(connection, "Personalstamm");
  TableFiller users(connection, "Benutzer");
  struct Person {
    std::string_view number, initials, salutation, title, first, last, user;
  };
  for (const Person& person : {Person{"1", "af", "Frau", "Dr.", "Amelie", "Feldkamp-Beispiel", "feldkamp"},
                               Person{"2", "bm", "Herr", "", "Bruno", "Mustermoor", "mustermoor"},
                               Person{"3", "cs", "Frau", "", "Cora", "Steinprobe", "steinprobe"}}) {
    staff.add({{"PersonalNr", person.number},
               {"Kurzzeichen", person.initials},
               {"Anrede", person.salutation},
               {"Titel", emptyToNull(Value(person.title))},
               {"Vorname", person.first},
               {"Nachname", person.last}});
    users.add({{"UserName", person.user}, {"PersonalNr", person.number}});
  }
}

void fillTexts(Connection& connection) {
  TableFiller texts(connection, "Textbausteine");
  for (const auto& [number, title, body] :
       {std::array<std::string_view, 3>{"1", "Dank", "Vielen Dank für Ihren Auftrag."},
        {"2", "Lieferzeit", "Wir liefern in der Regel innerhalb von drei Werktagen."}})
    texts.add({{"Textart", "AB"},
               {"TextNummer", number},
               {"ZusatztextNummer", ""},
               {"SprachKZ", "D"},
               {"Kurztext", title},
               {"Langtext", body},
               {"WoDrucken", "AB"},
               {"Schriftart", "Arial"},
               {"Schriftgröße", 10},
               {"Schriftstil", "Normal"}});
}

void fillNumberRanges(Connection& connection) {
  connection.execute(
      sql("Update Nummernkreise Set aktuellerWert = 200000, UntererWert = 200001, ObererWert = "
          "299999 Where NSchl = 'AB' And Buchungskreis = 1"_sql));
  TableFiller ranges(connection, "Nummernkreise");
  ranges.add({{"NSchl", "AB"}, {"Buchungskreis", 2}, {"Aktiviert", false}, {"aktuellerWert", 300000}});
  // The number range of orders collected by this rep; the other reps have none.
  ranges.add({{"NSchl", "AB"}, {"Buchungskreis", 101}, {"Aktiviert", true}, {"aktuellerWert", 400000}});
}

void fillCostAssignments(Connection& connection) {
  TableFiller costs(connection, "Kostenzuordnung");
  costs.add({{"Kostenstelle", "4100"}});
  costs.add({{"Kostenstelle", "4100"}, {"Kostentraeger", "P-17"}});
}

} // namespace

std::string_view demoAccessoryFees() {
  return "; Fees of orders with accessories: below which order value which fee is due, and which fee for\r\n"
         "; which value of the accessories.\r\n"
         "[Allgemein]\r\n"
         "MinBestGebuehr=150;7,50\r\n"
         "[Werte]\r\n"
         "1=50;2,50\r\n"
         "2=100;4,00\r\n"
         "3=250;6,00\r\n";
}

void fillDemoData(Connection& connection) {
  fillOptions(connection);
  demo::fillCodes(connection);
  demo::fillCustomers(connection);
  demo::fillArticles(connection);
  demo::fillContracts(connection);
  fillStaff(connection);
  fillTexts(connection);
  fillNumberRanges(connection);
  fillCostAssignments(connection);
}

} // namespace qx::erp
