// The table of the engine object.
#include "automation/classes/contents.h"
#include "automation/classes/engine_object.h"

namespace qx::automation {
namespace {

using Engine = ImportJobObject2;
using M = MembersOf<Engine>;
using Text = std::string_view;

constexpr Type anyValue{TypeKind::Any, {}};

/// Overloads are chosen by the type of the pointer.
constexpr auto connectionOfEngine =
    static_cast<std::shared_ptr<Connection> (Engine::*)() const>(&Engine::ActiveConnection);
constexpr auto setConnectionOfEngine =
    static_cast<void (Engine::*)(std::shared_ptr<Connection>)>(&Engine::ActiveConnection);
constexpr auto sessionOfEngine = static_cast<std::shared_ptr<Session> (Engine::*)() const>(&Engine::Session);
constexpr auto setSessionOfEngine = static_cast<void (Engine::*)(std::shared_ptr<Session>)>(&Engine::Session);

std::vector<Member> objectMembers() {
  return {
      M::property("ActiveConnection", "The database connection; one of the host keeps its transactions.",
                  connectionOfEngine, setConnectionOfEngine),
      M::method("ConnectDB", "Opens the list of jobs; True when that was possible.", &Engine::ConnectDB),
      M::method("WWSSession", "Connects to the ERP session; True when connected.", &Engine::WWSSession),
      M::property("Session", "The ERP session: its connection and its user become the engine's.",
                  sessionOfEngine, setSessionOfEngine),
      M::method(
          "JobViewShow", "Takes the lock, opens the job view and gives this object.",
          +[](CallOn<Engine> on, ObjectPointer& shown) {
            shown = on.self;
            dynamic_cast<EngineObject&>(*on.self).showJobView();
          },
          Named("ImportOBJ").as({TypeKind::Object, ClassOf<Engine>::name})),
      M::method("ProcessJobs", "Performs a processing run; True when it came to its end.",
                &Engine::ProcessJobs, optional("UnEvaluated").reference(),
                optional("ProcessState").reference()),
      M::method("VerifyProcesses",
                "NoProof: jobs are yet to be checked. NoProcess: nothing can be processed.",
                &Engine::VerifyProcesses, optional("NoProof"), optional("NoProcess")),
      M::method("Unload", "Releases the lock and raises JobViewUnload.", &Engine::Unload),
      M::variable("nCommand", "A text of the caller, kept as it is.", &Engine::nCommand),
      M::variable("ViewFormLoad", "Whether the job view is loaded.", &Engine::ViewFormLoad),
      M::variable("strGlobalProcErr", "The failures of the last run.", &Engine::strGlobalProcErr),
      M::variable("strGlobalKundeProcErr", "Those of its customer jobs.", &Engine::strGlobalKundeProcErr),
      M::method("CreateProtocol", "Opens the protocol of the day or creates it.", &Engine::CreateProtocol),
      M::method("AddProtocolColumn", "Adds a line to the open protocol.", &Engine::AddProtocolColumn,
                "Vorgang", "Nummer", "Status", "VADatum", "Info", optional("ProtArtikelNummern"),
                optional("ProtBez"), optional("ProtMenge"), optional("ProtPreis"), optional("Neukunde")),
      M::method("DelItem", "Deletes a staged job or position by its key.", &Engine::DelItem, "ItemName",
                optional("DelKundenVertrag")),
      M::method("DelArchives", "Deletes every done job.", &Engine::DelArchives),
      M::method("Export", "Writes every staged job to a job file.", &Engine::Export, "FileName"),
      M::method("Import", "Stages the jobs of a job file.", &Engine::Import, "FileName"),
      M::method("GUID", "A new key of 32 hexadecimal digits.", &Engine::GUID),
  };
}

/// The bases that these come from are not the caller's affair, so they are called on the engine itself.
std::vector<Member> lookupMembers() {
  return {
      M::method(
          "KundeAngelegt", "Whether the customer, or its numbered address, exists.",
          +[](Engine& engine, Text customer, Text address) -> bool {
            return engine.KundeAngelegt(customer, address);
          },
          "Kundennummer", optional("AdressNummer")),
      M::method(
          "GetAdresse", "The lines of an address, joined.",
          +[](Engine& engine, Text customer, Text address) -> std::string {
            return engine.GetAdresse(customer, address);
          },
          "Kundennummer", optional("AdressNummer")),
      M::method("GetAdressDaten", "The lines of an address one by one; True when there is one.",
                &Engine::GetAdressDaten, "Kundennummer", "AdressNummer", "Bez1", "Bez2", "Bez3", "Strasse",
                "Land", "PLZ", "Ort"),
      M::method("AddAdressDaten", "Adds a numbered address; an existing one stays as it is.",
                &Engine::AddAdressDaten, "Kundennummer", "AdressNummer", "Bez1", "Bez2", "Bez3", "Strasse",
                "Land", "PLZ", "Ort"),
      M::method(
          "GetBankverbindung", "The name of the bank of a bank code.",
          +[](Engine& engine, Text code) -> std::string { return engine.GetBankverbindung(code); }, "BLZ"),
      M::method(
          "GetDiversKunde", "Whether this is the number of one-time customers.",
          +[](Engine& engine, Text customer) -> bool { return engine.GetDiversKunde(customer); },
          "Kundennummer"),
      M::method("GetVertragsZustand",
                "A contract line against what is stored: 0 new, 1 changed, 2 unchanged, 3 deleted.",
                &Engine::GetVertragsZustand, "Kundennummer", "Vertragsnummer", "Artikelnummer", "Vertragsart",
                optional("JobID")),
      M::method("GetDiffVertrags", "Whether a contract differs from what is stored.",
                &Engine::GetDiffVertrags, "Vertrag"),
      M::method("GetDelVerträge",
                "Marks the customer's stored contracts that are no longer imported; gives their number.",
                &Engine::GetDelVerträge, "Kundennummer"),
      M::method(
          "VertragsgegenstandAngelegt", "Whether the contract object exists.",
          +[](Engine& engine, Text number) -> bool { return engine.VertragsgegenstandAngelegt(number); },
          "Vertragsgegenstand"),
      M::method(
          "GetVertragsgegenstand", "The name of a contract object.",
          +[](Engine& engine, Text number) -> std::string { return engine.GetVertragsgegenstand(number); },
          "VertragsgegenstandNr"),
      M::method("GetTextbaustein", "A text block; True when there is one.", &Engine::GetTextbaustein,
                "Textart", "TextNummer", "Zusatztext", "SprachKZ", "Kurztext", "Langtext", "WoDrucken",
                "Schriftart", "Schriftgröße", "Schriftstil"),
      M::method(
          "GetArtikelbezeichnung", "The name of an article.",
          +[](Engine& engine, Text article) -> std::string { return engine.GetArtikelbezeichnung(article); },
          "Artikelnummer"),
      M::method(
          "ArtikelAngelegt", "Whether the article exists.",
          +[](Engine& engine, Text article) -> bool { return engine.ArtikelAngelegt(article); },
          "Artikelnummer"),
  };
}

std::vector<Member> ruleMembers() {
  return {
      M::method("GetSteuerschlüssel", "The tax key of a pair of tax marks on a day, as yyyymmdd.",
                &Engine::GetSteuerschlüssel, "MwStKZKunde", "MwStKZArtikel", "Datum"),
      M::method("GetSteuerSatz", "The rate of a tax key in percent.", &Engine::GetSteuerSatz,
                "Steuerschlüssel"),
      M::method("GetGRabatt", "The discount in total: an amount when Param is 1, else a rate in percent.",
                &Engine::GetGRabatt, "KZRabattart", "KZRabatt1", "Rabatt1", "KZRabatt2", "Rabatt2",
                "KZRabatt3", "Rabatt3", "Param", "Betrag"),
      M::method("rundenEx", "A number rounded to a multiple of a step.", &Engine::rundenEx, "zahl",
                "RundenAuf", "Aufrunden"),
      M::method("intdat", "The time stamp of a day.", &Engine::intdat, "SystemDatum"),
      M::method("NowEx", "The date of the ERP session.", &Engine::NowEx),
      M::method("GetLagerbestand", "The stock of an article, and the unit that it is in.",
                &Engine::GetLagerbestand, "Artikelnummer", "Mengeneinheit", "Menge", "strME",
                optional("MEUmrechnung").reference()),
      M::method("MengeneinheitAlternativ", "The unit that the ERP knows for another name of it.",
                &Engine::MengeneinheitAlternativ, "Mengeneinheit"),
      M::method("CheckKostzuord", "0 when a cost assignment satisfies the rule of the kind of document.",
                &Engine::CheckKostzuord, "Belegart", "KostID", "ShowMessage"),
      M::method("Encrypt", "A text scrambled by the installation's code tables.", &Engine::Encrypt,
                "strText"),
      M::method("Decrypt", "The text back.", &Engine::Decrypt, "strText"),
      M::method("CheckSum", "The sum of the codes of the characters.", &Engine::CheckSum, "strText"),
  };
}

using Fill = bool (ComboLists::*)(ComboTarget&, std::string_view) const;

Member fillMember(std::string_view name, Fill fill) {
  return M::method(name, "Fills a drop-down list and selects the current value; True when it was found.",
                   fill, Named("combo").reference(), "current");
}

std::vector<Member> comboMembers() {
  return {
      fillMember("FillComboVersandart", &ComboLists::FillComboVersandart),
      fillMember("FillComboZahlungsart", &ComboLists::FillComboZahlungsart),
      fillMember("FillComboKundengruppe", &ComboLists::FillComboKundengruppe),
      fillMember("FillComboPreisliste", &ComboLists::FillComboPreisliste),
      fillMember("FillComboWährung", &ComboLists::FillComboWährung),
      fillMember("FillComboVertragsart", &ComboLists::FillComboVertragsart),
      fillMember("FillComboVertreter", &ComboLists::FillComboVertreter),
      fillMember("FillComboZahlungsbed", &ComboLists::FillComboZahlungsbed),
  };
}

std::vector<Member> settingMembers() {
  return {
      M::method("ImpGetSetting", "A setting of the shared or of the local store.", &Engine::ImpGetSetting,
                Named("AppName").as(anyValue), Named("Section").as(anyValue), Named("Key").as(anyValue),
                optional("GetLocal")),
      M::method("ImpSaveSetting", "Stores a setting. Gives the empty text.", &Engine::ImpSaveSetting,
                Named("AppName").as(anyValue), "Section", "Key", "Setting", optional("SaveLocal")),
  };
}

std::vector<Member> allMembers() {
  std::vector<Member> all;
  for (auto* const part : {&objectMembers, &lookupMembers, &ruleMembers, &comboMembers, &settingMembers})
    for (Member& member : (*part)()) all.push_back(std::move(member));
  return all;
}

} // namespace

const ClassTable& ClassOf<ImportJobObject2>::table() {
  static const ClassTable table(
      name, "Processes staged jobs and answers questions about the ERP's data.", allMembers(),
      {{"JobViewUnload", "The job view was closed.", static_cast<DispatchId>(EventId::JobViewUnload), {}},
       {"ProcessProgress",
        "How far the section of a run is.",
        static_cast<DispatchId>(EventId::ProcessProgress),
        {{.name = "Percent", .type = {TypeKind::Int16, {}}}}},
       {"ProcessInfo",
        "What the run is doing.",
        static_cast<DispatchId>(EventId::ProcessInfo),
        {{.name = "Info", .type = {TypeKind::Text, {}}}}}});
  return table;
}

} // namespace qx::automation
