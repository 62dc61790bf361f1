// How arguments find their parameters, and what a wrong call costs.
#include "automation_fixture.h"

#include <limits>

namespace qx::automation {
namespace {

class AutomationCalls : public AutomationTest {
protected:
  /// With arguments by name after those by position.
  static std::string named(const ObjectPointer& object, std::string_view member,
                           const std::vector<Variant>& positional,
                           const std::vector<std::pair<std::string, Variant>>& byName) {
    return outcome([&] {
      const DispatchId id = object->memberId(member).value();
      Arguments arguments{positional, {}};
      for (const auto& [name, value] : byName)
        arguments.named.emplace_back(object->parameterId(id, name).value_or(-1), value);
      return object->invoke(id, Access::MethodOrGet, arguments);
    });
  }
  /// Only the number of the error.
  static std::string numberOfCall(const ObjectPointer& object, std::string_view member,
                                  const std::vector<Variant>& arguments) {
    return numberOf([&] { return call(*object, member, arguments); });
  }

  ObjectPointer engineObject = create("importjobobject2");
};

} // namespace

TEST_F(AutomationCalls, FindMembersWhateverTheCaseOfTheirNames) {
  const ObjectPointer contract = create("VERTRAG");
  put(*contract, "KÜNDIGUNGSGRUND", "zu teuer");
  EXPECT_EQ(read(contract, "kündigungsgrund"), "'zu teuer'");
  EXPECT_EQ(called(contract, "Kuendigungsgrund"), "438: Vertrag kennt 'Kuendigungsgrund' nicht.");
  EXPECT_EQ(outcome([&]() -> Variant { return create("Rechnung"); }),
            "429: Die Klasse 'Rechnung' gibt es nicht.");
  Arguments none;
  EXPECT_EQ(numberOf([&] { return contract->invoke(4711, Access::Get, none); }), "438");
  EXPECT_EQ(numberOf([&] { return contract->invoke(defaultMember, Access::Get, none); }), "438");
}

TEST_F(AutomationCalls, BindArgumentsByPositionByNameAndByDefault) {
  const auto address = [&](std::vector<Variant> positional,
                           const std::vector<std::pair<std::string, Variant>>& byName) {
    return named(engineObject, "GetAdresse", positional, byName);
  };
  add("Adressenstamm", {{"Kundennummer", "20001"}, {"Adressnummer", "7"}, {"Bez1", "Lager"}});
  EXPECT_EQ(address({"20001", "7"}, {}), "'Lager'");
  EXPECT_EQ(address({}, {{"ADRESSNUMMER", 7}, {"kundennummer", "20001"}}), "'Lager'");
  EXPECT_EQ(address({"20001"}, {{"AdressNummer", "7"}}), "'Lager'");
  const std::string mainAddress = "'Hafenbau GmbH\r\nAm Kai 1\r\nDE\r\n20457\r\nHamburg'";
  EXPECT_EQ(address({"20001"}, {}), mainAddress);
  EXPECT_EQ(address({"20001", Variant::missing()}, {}), mainAddress);
  const std::string of = "ImportJobObject2.GetAdresse: ";
  EXPECT_EQ(address({"20001", "7", "8"}, {}), "450: " + of + "Die Anzahl der Argumente stimmt nicht.");
  EXPECT_EQ(address({"20001"}, {{"Kundennummer", "20001"}}),
            "450: " + of + "Die Anzahl der Argumente stimmt nicht.");
  EXPECT_EQ(address({}, {}), "449: " + of + "Das Argument 'Kundennummer' ist nicht optional.");
  EXPECT_EQ(address({Variant::missing(), "7"}, {}),
            "449: " + of + "Das Argument 'Kundennummer' ist nicht optional.");
  EXPECT_EQ(address({"20001"}, {{"Strasse", "x"}}), "448: " + of + "Es gibt kein Argument dieses Namens.");
  EXPECT_EQ(address({Variant::null()}, {}), "94: " + of + "Null ist hier kein Wert.");
}

TEST_F(AutomationCalls, LeaveOutOptionalArgumentsInTheMiddle) {
  ASSERT_EQ(called(engineObject, "CreateProtocol"), "True");
  const Variant none = Variant::missing();
  EXPECT_EQ(called(engineObject, "AddProtocolColumn",
                   {"Auftrag", "1", "Erledigt", "24.11.2026", "Info", "A100", none, none, "9,5", true}),
            "Empty");
  EXPECT_EQ(called(engineObject, "AddProtocolColumn",
                   {"Kunden", "2", "Fehler", "24.11.2026", "", none, "nicht gezeigt"}),
            "Empty");
  EXPECT_EQ(listed("Select Text0, Text1, Text4, Text5, Text6, Text7, Text8 From Protokollpositionen"_sql),
            (std::vector<std::string>{"Auftrag|1|A100|||9,5|1", "Kunden|2|||||"}));
}

TEST_F(AutomationCalls, GiveAnswersBackThroughArgumentsByReference) {
  Variant name1 = 5;
  Variant town;
  Variant inner = "alt";
  Variant outer = Variant::reference(inner);
  EXPECT_EQ(called(engineObject, "GetAdressDaten",
                   {"20001", "", Variant::reference(name1), "by value", Variant::reference(outer), "", "", "",
                    Variant::reference(town)}),
            "True");
  EXPECT_EQ(shown(name1), "'Hafenbau GmbH'");
  EXPECT_EQ(shown(town), "'Hamburg'");
  // A reference to a reference reaches the variable behind both.
  EXPECT_EQ(shown(inner), "''");
  EXPECT_EQ(outer.variable(), &inner);

  Variant noProof = "?";
  Variant noProcess;
  EXPECT_EQ(called(engineObject, "VerifyProcesses", {Variant::missing(), Variant::reference(noProcess)}),
            "Empty");
  EXPECT_EQ(shown(noProcess), "True");
  // What the variable held before does not matter.
  EXPECT_EQ(called(engineObject, "VerifyProcesses", {Variant::reference(noProof)}), "Empty");
  EXPECT_EQ(shown(noProof), "False");
  EXPECT_EQ(called(engineObject, "VerifyProcesses"), "Empty");
}

TEST_F(AutomationCalls, LeaveTheCallersVariableAloneWhenTheyFail) {
  Variant unit = "alt";
  erp.environment.connection = nullptr;
  EXPECT_EQ(called(engineObject, "GetLagerbestand", {"A100", "ST", 1, Variant::reference(unit)}),
            "440: Es ist keine Datenbank verbunden.");
  EXPECT_EQ(shown(unit), "'alt'");
}

TEST_F(AutomationCalls, RefuseWhatAMemberIsNotMadeFor) {
  const ObjectPointer customer = create("Kunde");
  const ObjectPointer store = create("ImportJobObject");
  EXPECT_EQ(numberOf([&] { return get(*customer, "AddItem"); }), "438");
  EXPECT_EQ(numberOf([&] { put(*customer, "AddItem", 1); }), "438");
  EXPECT_EQ(numberOf([&] { put(*customer, "FormatItemCSV", "x"); }), "383");
  EXPECT_EQ(read(store, "ActiveConnection"),
            "394: ImportJobObject.ActiveConnection: Die Eigenschaft kann nicht gelesen werden.");
  EXPECT_EQ(numberOfCall(customer, "Bez1", {"zu viel"}), "450");
  Arguments two{{"a", "b"}, {}};
  EXPECT_EQ(numberOf([&] { return customer->invoke(customer->memberId("Bez1").value(), Access::Put, two); }),
            "450");
  Arguments none;
  EXPECT_EQ(
      numberOf([&] { return customer->invoke(customer->memberId("Bez1").value(), Access::Method, none); }),
      "438");
}

TEST_F(AutomationCalls, TakeObjectsOfTheirClassOnly) {
  const ObjectPointer store = create("ImportJobObject");
  const ObjectPointer job = create("ImportJob");
  EXPECT_EQ(called(store, "AddItem", {create("Kunde")}),
            "13: ImportJobObject.AddItem: Das Objekt der Klasse Kunde ist keines der Klasse ImportJob.");
  EXPECT_EQ(called(store, "AddItem", {ObjectPointer(ScriptObject::make("ImportJob"))}),
            "13: ImportJobObject.AddItem: Das Objekt der Klasse ImportJob ist keines der Klasse ImportJob.");
  EXPECT_EQ(numberOfCall(store, "AddItem", {"JOB"}), "13");
  EXPECT_EQ(called(store, "AddItem", {Variant::nothing()}), "False");
  EXPECT_EQ(numberOfCall(store, "UpdateItem", {Variant::nothing(), "J1"}), "91");
  EXPECT_EQ(numberOfCall(engineObject, "GetDiffVertrags", {job}), "13");
  EXPECT_EQ(set(job, "SubItem", job), "13: ImportJob.SubItem: Das Objekt der Klasse ImportJob ist keines "
                                      "der Klasse ImportJobSubItem.");
  EXPECT_EQ(set(engineObject, "Session", job), "13: ImportJobObject2.Session: Das Objekt ist keine Sitzung.");
  EXPECT_EQ(numberOf([&] { put(*engineObject, "ActiveConnection", "Provider=x"); }), "13");
}

TEST_F(AutomationCalls, TakeHugeTextsAndRefuseThoseWithNul) {
  const ObjectPointer customer = create("Kunde");
  const std::string huge(std::size_t{8} << 20U, 'x');
  put(*customer, "Bemerkung", huge);
  put(*customer, "JobID", "K1");
  EXPECT_EQ(set(customer, "Bez1", std::string("a\0b", 3)),
            "5: Kunde.Bez1: Der Text enthält das Zeichen NUL.");
  EXPECT_EQ(called(customer, "AddItem"), "Empty");
  EXPECT_EQ(listed("Select length(Bemerkung), Bez1 From ImportKopf"_sql),
            (std::vector<std::string>{"8388608|"}));
  EXPECT_EQ(numberOfCall(engineObject, "CheckSum", {huge}), "1006632960&");
}

TEST_F(AutomationCalls, TurnFailuresOfAMemberIntoItsErrors) {
  EXPECT_EQ(called(engineObject, "intdat", {"kein Datum"}).substr(0, 3), "5: ");
  EXPECT_EQ(called(engineObject, "intdat", {Variant::null()}).substr(0, 3), "5: ");
  erp.environment.connection = nullptr;
  EXPECT_EQ(called(engineObject, "KundeAngelegt", {"20001"}), "440: Es ist keine Datenbank verbunden.");
  // These show a box instead.
  EXPECT_EQ(called(engineObject, "ConnectDB"), "False");
  EXPECT_EQ(erp.desktop.texts(),
            "Fehler beim Öffnen der Importvorgänge: Bitte geben Sie eine Connection an.\n");
}

TEST_F(AutomationCalls, CountTheObjectsThatAreAlive) {
  EXPECT_EQ(component->liveObjects(), 1U); // the engine
  {
    const ObjectPointer job = create("ImportJob");
    const ObjectPointer position = objectIn(job, "SubItem");
    EXPECT_EQ(component->liveObjects(), 3U);
    // The same object again, as long as it is held.
    EXPECT_EQ(objectIn(job, "SubItem"), position);
    call(*job, "NewSubItem");
    EXPECT_NE(objectIn(job, "SubItem"), position);
    put(*job, "SubItem", position);
    EXPECT_EQ(objectIn(job, "SubItem"), position);
    EXPECT_EQ(component->liveObjects(), 3U);
  }
  EXPECT_EQ(component->liveObjects(), 1U);
  // An object keeps its component; what it held is released with it.
  const std::weak_ptr<Component> alive = component;
  component.reset();
  EXPECT_FALSE(alive.expired());
  EXPECT_EQ(called(engineObject, "rundenEx", {2.675, "0,01", false}), "2.68#");
  engineObject.reset();
  EXPECT_TRUE(alive.expired());
}

} // namespace qx::automation
