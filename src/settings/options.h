// Every settings key that the component reads or writes, one constant each.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace qx {

/// The format of a setting's text. Checks differ on purpose in which texts count as on.
enum class OptionRule : std::uint8_t {
  NonZero,          ///< a check: a number other than 0 is on, 0 is off
  AtLeastOne,       ///< a check: a number from 1 is on, 0 is off
  One,              ///< a check: exactly "1" is on, exactly "0" is off
  Truth,            ///< a check: a number other than 0, "True", "Wahr"; 0, "False" and "Falsch" are off
  CustomerSpecific, ///< any text; exactly "VLK" is on
  Text,             ///< any text
  Number,           ///< decimal text, German comma allowed
  Integer,          ///< decimal text of a whole number of 16 bits
  ArticleNumber,    ///< an article, or empty for none
  Day,              ///< a day as the first eight digits of a time stamp
};

enum class OptionStore : std::uint8_t { Shared, Local };

/// One settings key. Texts are literals.
struct OptionSpec {
  std::string_view section;
  std::string_view key;
  OptionRule rule = OptionRule::Text;
  std::string_view english;  ///< what it does
  std::string_view german;   ///< the same for clerks
  std::string_view fallback; ///< the value of a key that was never written
  std::string_view control;  ///< object name in the options dialog; empty when the dialog does not show it
  std::string_view caption;  ///< of the control, access key marked with '&'
  OptionStore store = OptionStore::Shared;
  bool customerSpecific = false; ///< shown, saved and used in customer-specific mode only
  bool threeStates = false;      ///< a check that can be on, off or not set

  constexpr bool isCheck() const { return rule <= OptionRule::Truth; }
  constexpr bool isLocal() const { return store == OptionStore::Local; }
};

/// A key that is read as a `T`: `bool`, `std::optional<bool>` where "not set" matters, `std::string`,
/// `double` or `std::optional<std::int16_t>`.
template <class T>
struct Option : OptionSpec {};

using CheckOption = Option<bool>;
using TriStateOption = Option<std::optional<bool>>;
using TextOption = Option<std::string>;
using AmountOption = Option<double>;
using WholeOption = Option<std::optional<std::int16_t>>;

/// All keys. Those of the options dialog come first, in the order in which it loads and saves them: the
/// general ones, then the customer-specific ones.
std::span<const OptionSpec* const> allOptions();

/// Whether the text turns the check on or off; used for reading, showing and storing it. Null for any other
/// text, including the empty one, which counts as off.
std::optional<bool> checkState(const OptionSpec& option, std::string_view text);

/// The value of an integer setting, with an optional sign and blanks around it; null when the text is not a
/// number or exceeds 16 bits.
std::optional<std::int16_t> settingToInt16(std::string_view text);

/// The entry of a section and key, or null. The local store and the shared one have no key in common.
const OptionSpec* findOption(std::string_view section, std::string_view key);

namespace option {

inline constexpr std::string_view ownSection = "ImportJob2";
inline constexpr std::string_view forOthersEnglish = "stored for other programs";
inline constexpr std::string_view forOthers =
    "Wird für andere Programme der Installation gespeichert; die Importvorgänge selbst richten sich nicht "
    "danach.";

/// A check box of the dialog's first page.
constexpr OptionSpec general(std::string_view key, OptionRule rule, std::string_view control,
                             std::string_view caption, std::string_view english, std::string_view german,
                             OptionStore store = OptionStore::Shared) {
  return {ownSection, key, rule, english, german, "", control, caption, store};
}

/// A control of the dialog's second page.
constexpr OptionSpec special(std::string_view key, OptionRule rule, std::string_view control,
                             std::string_view caption, std::string_view english, std::string_view german) {
  const bool isCheck = rule == OptionRule::NonZero;
  return {ownSection, key, rule, english, german, "", control, caption, OptionStore::Shared, true, isCheck};
}

/// A key without a control.
constexpr OptionSpec hidden(std::string_view section, std::string_view key, OptionRule rule,
                            std::string_view english, std::string_view german, std::string_view fallback = "",
                            OptionStore store = OptionStore::Shared) {
  return {section, key, rule, english, german, fallback, "", "", store};
}

constexpr OptionSpec window(std::string_view key, std::string_view english, std::string_view german) {
  return hidden("MAIN", key, OptionRule::Integer, english, german, "", OptionStore::Local);
}

/// What documents of a kind require: 1 cost centre, 2 cost unit, 3 both.
constexpr OptionSpec costsOf(std::string_view key, std::string_view german) {
  return hidden("Kostenzuordnung", key, OptionRule::Integer,
                "costs that the document must name: 1 cost centre, 2 cost unit, 3 both", german, "0");
}

using enum OptionRule;

inline constexpr TriStateOption mayDelete{
    general("Löschen", Truth, "chkLoeschen", "Vorgänge dürfen gelös&cht werden",
            "offer the command that deletes a job",
            "Der Befehl Löschen wird angeboten. Gilt für alle Arbeitsplätze.")};
inline constexpr TriStateOption mayChange{
    general("Ändern", Truth, "chkAendern", "Vorgänge dürfen geän&dert werden", forOthersEnglish,
            "Wird für alle Arbeitsplätze gespeichert; die Importvorgänge selbst richten sich nicht danach.")};
inline constexpr CheckOption keepPosition{
    general("FensterpositionSpeichern", One, "chkFensterpos", "Fenster&position merken",
            "open the window where it stood last",
            "Die Importvorgänge öffnen sich dort, wo das Fenster zuletzt stand. Gilt nur für Sie.",
            OptionStore::Local)};
inline constexpr CheckOption keepSize{
    general("FenstergrößeSpeichern", One, "chkFenstergroe_e", "Fenstergröße &merken",
            "open the window as large as it was last",
            "Die Importvorgänge öffnen sich so groß, wie das Fenster zuletzt war. Gilt nur für Sie.",
            OptionStore::Local)};
inline constexpr CheckOption deletedContracts{general("GelöschteVerträge", NonZero, "chkGelVertr_ge",
                                                      "Gelöschte Ve&rträge berücksichtigen", forOthersEnglish,
                                                      forOthers)};
inline constexpr CheckOption checkStaged{general("AutomatischPrüfen", NonZero, "chkAutomatischPr_fen",
                                                 "A&utomatisch prüfen", forOthersEnglish, forOthers)};
inline constexpr CheckOption automatic{general(
    "AutomatischVerarbeiten", NonZero, "chkAutomatschVerarbeiten", "Beim &Verarbeiten automatisch prüfen",
    "a run checks jobs and parks those with findings",
    "Kunden und Aufträge mit Warnungen oder Fehlern werden zurückgestellt statt verarbeitet, bis Sie sie "
    "freigeben. Sonst werden Kunden ungeprüft verarbeitet und nur Aufträge mit Fehlern zurückgestellt.")};
inline constexpr CheckOption warnOfStock{
    general("WarnungLagerbestand", NonZero, "chkWarnungLager", "Bei fehlendem &Lagerbestand warnen",
            "warn of positions for which the stock does not suffice",
            "Auftragspositionen, für die der Lagerbestand nicht reicht, erhalten eine Warnung.")};
inline constexpr CheckOption createGroups{general(
    "KundenKundengruppe", NonZero, "chkKundeKundengruppe", "Fehlende Kunden&gruppen anlegen",
    "create unknown customer groups",
    "Eine unbekannte Kundengruppe wird beim Schreiben des Kunden angelegt; sonst endet der Vorgang mit "
    "einem Fehler. Wird beim Verarbeiten automatisch geprüft, wird er in jedem Fall zuerst "
    "zurückgestellt.")};
inline constexpr CheckOption createReps{
    general("KundenVertreter", NonZero, "chkKundeVertreter", "Fehlende Ver&treter anlegen",
            "create unknown sales representatives",
            "Ein unbekannter Vertreter wird beim Schreiben des Kunden angelegt; sonst endet der Vorgang mit "
            "einem Fehler. Wird beim Verarbeiten automatisch geprüft, wird er in jedem Fall zuerst "
            "zurückgestellt.")};
inline constexpr CheckOption createPayments{general(
    "KundenZahlungsart", NonZero, "chkKundenZahlungsart", "Fehlende &Zahlungsarten anlegen",
    "create unknown payment methods",
    "Eine unbekannte Zahlungsart wird beim Schreiben des Kunden angelegt; sonst endet der Vorgang mit "
    "einem Fehler. Wird beim Verarbeiten automatisch geprüft, wird er in jedem Fall zuerst "
    "zurückgestellt.")};
inline constexpr CheckOption createBanks{general(
    "KundenBankleitzahl", NonZero, "chkKundenBlz", "Fehlende &Bankleitzahlen anlegen",
    "create unknown bank codes",
    "Eine unbekannte Bankleitzahl wird beim Schreiben des Kunden angelegt; sonst endet der Vorgang mit "
    "einem Fehler. Wird beim Verarbeiten automatisch geprüft, wird er in jedem Fall zuerst "
    "zurückgestellt.")};
inline constexpr CheckOption compareAddresses{general(
    "KundeAdressProof", NonZero, "chkKundeAdressProof", "Adre&ssen mit dem Kundenstamm vergleichen",
    "warn of addresses that differ from the customer's",
    "Weicht die Haupt-, Liefer- oder Rechnungsadresse eines Kundenvorgangs vom Kundenstamm ab, erhält er "
    "beim Prüfen eine Warnung; beim Verarbeiten nur, wenn dort automatisch geprüft wird.")};
inline constexpr CheckOption purgeCustomers{
    general("KundeDelete", One, "chkKundeDelete", "Erledigte Ku&ndenvorgänge nach dem Verarbeiten löschen",
            "delete done customers after a run",
            "Am Ende jeder Verarbeitung werden die erledigten Kundenvorgänge gelöscht.")};
inline constexpr CheckOption purgeContracts{
    general("VTDelete", One, "chkVTDelete", "Erledigte Vertragsvorgänge nac&h dem Verarbeiten löschen",
            "delete done customer contracts after a run",
            "Am Ende jeder Verarbeitung werden die erledigten Vertragsvorgänge der Kunden gelöscht.")};
inline constexpr CheckOption changedContracts{general("VTImportModified", NonZero, "chkVTImportModified",
                                                      "Geänderte Verträge &einlesen", forOthersEnglish,
                                                      forOthers)};
inline constexpr CheckOption purgeOrders{
    general("AuftragDelete", One, "chkAuftragDelete",
            "Erledigte Auftragsvorgänge nach dem Verarbeiten l&öschen", "delete done orders after a run",
            "Am Ende jeder Verarbeitung werden die erledigten Auftragsvorgänge gelöscht.")};
inline constexpr CheckOption costAssignment{
    general("KostenzuordnungAuftrag", AtLeastOne, "chkKostZuordnung", "K&ostenzuordnung prüfen",
            "demand a cost assignment of each order position",
            "Jede Auftragsposition muss eine gültige Kostenzuordnung haben.")};
inline constexpr CheckOption createCosts{
    general("KostAutomatischAnlegen", NonZero, "chkCreateKost", "Fehlende Kostenzuordnungen &anlegen",
            "create missing cost assignments",
            "Eine fehlende Kostenzuordnung wird angelegt. Nur wählbar, wenn die Kostenzuordnung geprüft "
            "wird.")};
inline constexpr CheckOption readyForDelivery{
    general("AuftragLieferbereit", One, "chkAuftLieferbereit", "Positionen sind l&ieferbereit",
            "new order positions are ready for delivery",
            "Neue Auftragspositionen werden als lieferbereit eingelesen.")};
inline constexpr CheckOption readyForInvoice{
    general("AuftragFakturierbereit", One, "chkAuftFakturierbereit", "Positionen sind &fakturierbereit",
            "new order positions are ready for the invoice",
            "Neue Auftragspositionen werden als fakturierbereit eingelesen.")};
inline constexpr CheckOption checkCreditLimit{general(
    "KreditlimitAuftrag", AtLeastOne, "chkCheckKreditlimit", "&Kreditlimit prüfen",
    "check the credit limits of an order's customer",
    "Erreichen die offenen Posten des Kunden sein Kreditlimit 1, erhält der Auftrag eine Warnung, beim "
    "Kreditlimit 2 einen Fehler.")};

inline constexpr TextOption ZAVSRG{
    special("ZAVSRG", Text, "txtZA_RG_VS", "Zahlungsart bei &abweichender Anschrift:",
            "payment method of orders with another invoice and delivery address",
            "Die Zahlungsart, die ein Auftrag mit abweichender Rechnungs- und Lieferanschrift haben muss.")};
inline constexpr TextOption ZAVS{special(
    "ZAVS", Text, "txtZAVS", "Zahlungsart bei abweichender &Lieferung:", forOthersEnglish, forOthers)};
inline constexpr TextOption VAZA{
    special("VAZA", Text, "txtVAZA", "&Versandart zur Zahlungsart:", forOthersEnglish, forOthers)};
inline constexpr AmountOption abGewicht{
    special("abGewicht", Number, "txtGewicht", "Versandart wechselt ab &Gewicht (kg):",
            "weight in kg from which orders take the shipping method of `VSabGewicht`; 0 for none",
            "Ab diesem Gewicht erhält der Auftrag die nebenstehende Versandart. Leer oder 0: nie.")};
inline constexpr TextOption VSabGewicht{special(
    "VSabGewicht", Text, "txtVAGewicht", "Versandart ab &diesem Gewicht:", "shipping method of heavy orders",
    "Die Versandart schwerer Aufträge. Leer: sie behalten ihre Versandart.")};
inline constexpr TextOption FrachtTransport{
    special("FrachtTransport", ArticleNumber, "txtFrachtTransport",
            "Artikel der &Transportzeile:", "article of the transport line",
            "Die Artikelnummer der Transportzeile. Leer: keine "
            "Transportzeile.")};
inline constexpr TextOption FrachtGebuehr{
    special("FrachtGebuehr", ArticleNumber, "txtFrachGebuehr", "Artikel der Ge&bührenzeile:",
            "article of the fee line", "Die Artikelnummer der Gebührenzeile. Leer: keine Gebührenzeile.")};
inline constexpr TextOption VAKunde{special(
    "VAKunde", Text, "txtVAKunde", "Versandart &mit Frachtzeilen:", "shipping method with freight lines",
    "Aufträge mit dieser Versandart erhalten die Frachtzeilen.")};
inline constexpr TextOption ZAKunde{special(
    "ZAKunde", Text, "txtZAKunde", "&Zahlungsart mit Frachtzeilen:", "payment method with freight lines",
    "Aufträge mit dieser Zahlungsart erhalten die Frachtzeilen.")};
inline constexpr TriStateOption linesReadyForDelivery{
    special("SWAuftLieferbereit", NonZero, "chkSWLief", "Geschriebene Positionen sind l&ieferbereit",
            "written positions are ready for delivery",
            "Angekreuzt: Alle Positionen geschriebener Aufträge sind lieferbereit. Leer: Keine ist es. "
            "Dazwischen: Jede behält ihre eigene Angabe.")};
inline constexpr TriStateOption linesReadyForInvoice{
    special("SWAuftFakturierbereit", NonZero, "chkSWFak", "Geschriebene Positionen sind &fakturierbereit",
            "written positions are ready for the invoice",
            "Angekreuzt: Alle Positionen geschriebener Aufträge sind fakturierbereit. Leer: Keine ist es. "
            "Dazwischen: Jede behält ihre eigene Angabe.")};
inline constexpr TextOption NeukundenRabatt{
    special("NeukundenRabatt", Text, "txtNeukundenRabatt", "&Neukundenrabatt:", forOthersEnglish, forOthers)};
// Read together with the fee line, but not shown in the dialog.
inline constexpr AmountOption MinGebuehr{{ownSection, "MinGebuehr", Number, "least price of the fee line",
                                          "Der Mindestpreis der Gebührenzeile.", "0", "", "",
                                          OptionStore::Shared, true}};

/// Percent; 0 for never.
inline constexpr AmountOption priceDeviation{
    hidden(ownSection, "PreisAbweichungWarnen", Number,
           "percent by which the price of an order position may differ from the ERP's before a check warns; "
           "0: it only tells",
           "Ab wie viel Prozent Unterschied zum Preis der Warenwirtschaft eine Auftragsposition eine Warnung "
           "erhält. 0: Der Unterschied wird nur als Hinweis genannt.",
           "0")};

inline constexpr CheckOption confirmed{hidden(ownSection, "AppSettings", One,
                                              "the options have been confirmed once",
                                              "Die Optionen sind einmal bestätigt worden.")};
inline constexpr CheckOption runUnderWay{hidden(
    ownSection, "OnProcess", One, "a run of the window is under way", "Das Fenster verarbeitet gerade.")};
inline constexpr CheckOption orderBeingReadIn{
    hidden(ownSection, "NewMail", One, "another program is reading an order in; no run starts",
           "Ein anderes Programm liest gerade eine Bestellung ein.")};
inline constexpr TextOption protocolId{
    hidden(ownSection, "ProtoID", Text, "the protocol of the day", "Das Protokoll des Tages.")};
inline constexpr TextOption protocolDate{hidden(
    ownSection, "ProtoDate", Text, "the day of that protocol, dd.mm.yyyy", "Der Tag dieses Protokolls.")};
// The window clears this one when it opens; a run sets `runUnderWay`. They are separate on purpose.
inline constexpr CheckOption processMark{
    hidden("Process", "OnProcess", One, "cleared when the window opens; stored for other programs",
           "Wird beim Öffnen des Fensters gelöscht; für andere Programme.")};
inline constexpr WholeOption mainWidth{window("MainWidth", "width of the window", "Breite des Fensters.")};
inline constexpr WholeOption mainHeight{window("MainHeight", "height of the window", "Höhe des Fensters.")};
inline constexpr WholeOption mainState{window("MainState", "the window is 0 normal, 1 minimised, 2 maximised",
                                              "Das Fenster ist 0 normal, 1 verkleinert, 2 vergrößert.")};
inline constexpr WholeOption mainLeft{
    window("MainLeft", "left edge of the window", "Linker Rand des Fensters.")};
inline constexpr WholeOption mainTop{
    window("MainTop", "upper edge of the window", "Oberer Rand des Fensters.")};

inline constexpr CheckOption customerSpecific{hidden("Allgemein", "Individual", CustomerSpecific,
                                                     "`VLK` turns the customer-specific mode on",
                                                     "VLK schaltet die kundenspezifischen Werte ein.")};
inline constexpr TextOption homeCurrency{
    hidden("Allgemein", "Landeswährung", Text, "the home currency", "Die Landeswährung.", "DM")};
inline constexpr TextOption taxChangeDay{hidden("Allgemein", "DatumMwStÄnderung", Day,
                                                "the day from which the new tax keys hold",
                                                "Der Tag, ab dem die neuen Steuerschlüssel gelten.")};
inline constexpr WholeOption costsOfQuotes{costsOf("Angebot", "Was Angebote zuordnen müssen.")};
inline constexpr WholeOption costsOfOrders{costsOf("Kundenauftrag", "Was Kundenaufträge zuordnen müssen.")};
inline constexpr WholeOption costsOfPurchases{costsOf("Bestellung", "Was Bestellungen zuordnen müssen.")};
inline constexpr WholeOption costsOfInquiries{costsOf("Anfrage", "Was Anfragen zuordnen müssen.")};
inline constexpr TextOption costCentreLabel{hidden("Kostenzuordnung", "Kost1", Text,
                                                   "what the installation calls a cost centre",
                                                   "Die Bezeichnung der Kostenstelle.", "Kostenstelle")};
inline constexpr TextOption costUnitLabel{hidden("Kostenzuordnung", "Kost2", Text,
                                                 "what the installation calls a cost unit",
                                                 "Die Bezeichnung des Kostenträgers.", "Kostenträger")};
inline constexpr CheckOption circlePerOrder{hidden("Buchungskreise", "OnNewAB", One,
                                                   "ask for the booking circle with each order",
                                                   "Bei jedem Auftrag wird der Buchungskreis bestimmt.")};
inline constexpr TextOption creditLimit1{hidden("OP-Info", "Kreditlimit1", Number,
                                                "first limit of customers without one, in the home currency",
                                                "Kreditlimit 1 der Kunden, die keines haben.")};
inline constexpr TextOption creditLimit2{hidden("OP-Info", "Kreditlimit2", Number,
                                                "second limit of customers without one, in the home currency",
                                                "Kreditlimit 2 der Kunden, die keines haben.")};

} // namespace option
} // namespace qx
