#include "automation/class_table.h"
#include "automation/classes/class_tables.h"
#include "com/class_ids.h"
#include "com/failure.h"
#include "com/pointer.h"
#include "com/text.h"
#include "com/type_library.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace qx::com {
namespace {

using automation::EventDescription;
using automation::Member;
using automation::MemberDescription;
using automation::ParameterDescription;
using automation::Type;
using automation::TypeKind;

/// A type as the library describes it; one that refers to another type of the library holds its reference.
struct Described {
  TYPEDESC type{};
  TYPEDESC target{}; ///< of a pointer
  TYPEDESC inner{};  ///< of a pointer to a pointer
};

class Writer {
public:
  Writer(const std::wstring& file, SYSKIND kind) {
    require(CreateTypeLib2(kind, file.c_str(), library_.receive()), "create the type library");
    require(library_->SetName(Bstr("QXImportJob").get()), "name");
    require(library_->SetGuid(typeLibraryId), "identity");
    require(library_->SetVersion(typeLibraryMajor, typeLibraryMinor), "version");
    require(library_->SetLcid(LOCALE_NEUTRAL), "language");
    require(library_->SetDocString(Bstr("Quorvex ImportJob").get()), "description");
    // The interfaces refer to each other, so all are there before the first member.
    Pointer<ITypeLib> standard;
    require(LoadTypeLib(L"stdole2.tlb", standard.receive()), "load the standard types");
    require(standard->GetTypeInfoOfGuid(IID_IDispatch, dispatch_.receive()), "find IDispatch");
  }

  void write() {
    for (std::size_t i = 0; i < automation::publicEnumerations().size(); ++i)
      writeEnumeration(automation::publicEnumerations()[i], enumerationId(i));
    for (const ClassIds& ids : classIds()) begin(ids);
    for (const auto* const table : automation::publicClasses()) {
      writeMembers(*table);
      if (!table->events().empty()) writeEvents(*table);
    }
    for (const ClassIds& ids : classIds()) writeClass(ids);
    require(library_->SaveAllChanges(), "save the type library");
  }

private:
  Pointer<ICreateTypeInfo> add(const std::string& name, TYPEKIND kind, REFGUID id, WORD flags,
                               std::string_view help) {
    Pointer<ICreateTypeInfo> made;
    require(library_->CreateTypeInfo(Bstr(name).get(), kind, made.receive()), name);
    require(made->SetGuid(id), name);
    require(made->SetVersion(typeLibraryMajor, typeLibraryMinor), name);
    require(made->SetTypeFlags(flags), name);
    if (!help.empty()) require(made->SetDocString(Bstr(help).get()), name);
    types_[name] = made;
    return made;
  }

  void writeEnumeration(const automation::EnumerationTable& table, REFGUID id) {
    const auto made = add(std::string(table.name), TKIND_ENUM, id, 0, table.help);
    UINT index = 0;
    for (const auto& constant : table.constants) {
      VARIANT value{};
      value.vt = VT_I4;
      value.lVal = constant.value;
      VARDESC variable{};
      variable.memid = static_cast<MEMBERID>(0x40000000 + index);
      variable.varkind = VAR_CONST;
      variable.lpvarValue = &value;
      variable.elemdescVar.tdesc.vt = VT_I4;
      require(made->AddVarDesc(index, &variable), constant.name);
      require(made->SetVarName(index, Bstr(constant.name).get()), constant.name);
      ++index;
    }
    require(made->LayOut(), table.name);
  }

  /// The interface of a class and, before it, that of its events.
  void begin(const ClassIds& ids) {
    const auto* const table = tableOf(ids.name);
    const auto made =
        add("_" + std::string(ids.name), TKIND_DISPATCH, ids.interfaceId, TYPEFLAG_FDISPATCHABLE, {});
    inherit(*made.get());
    if (table->events().empty()) return;
    const auto events =
        add("__" + std::string(ids.name), TKIND_DISPATCH, ids.eventsId, TYPEFLAG_FDISPATCHABLE, {});
    inherit(*events.get());
  }

  void inherit(ICreateTypeInfo& made) const {
    HREFTYPE base = 0;
    require(made.AddRefTypeInfo(dispatch_.get(), &base), "IDispatch");
    require(made.AddImplType(0, base), "IDispatch");
  }

  static const automation::ClassTable* tableOf(std::string_view name) {
    for (const auto* const table : automation::publicClasses())
      if (table->name() == name) return table;
    throw automation::AutomationError(automation::ErrorNumber::Internal, "no table for a class");
  }

  /// Methods and the two halves of properties are functions of a dispatch interface.
  void writeMembers(const automation::ClassTable& table) {
    ICreateTypeInfo& made = *types_.at("_" + std::string(table.name())).get();
    UINT index = 0;
    for (const Member& member : table.members()) {
      const MemberDescription& it = member.description;
      if (it.isMethod || it.readable)
        writeFunction(made, index++, it, it.isMethod ? INVOKE_FUNC : INVOKE_PROPERTYGET);
      if (!it.writable) continue;
      MemberDescription setting = it;
      setting.parameters = {{.name = "value", .type = it.type}};
      setting.type = {};
      const bool takesObject = it.type.kind == TypeKind::Object;
      writeFunction(made, index++, setting, takesObject ? INVOKE_PROPERTYPUTREF : INVOKE_PROPERTYPUT);
    }
    require(made.LayOut(), table.name());
  }

  void writeEvents(const automation::ClassTable& table) {
    ICreateTypeInfo& made = *types_.at("__" + std::string(table.name())).get();
    UINT index = 0;
    for (const EventDescription& event : table.events())
      writeFunction(made, index++,
                    {.name = event.name,
                     .help = event.help,
                     .id = event.id,
                     .isMethod = true,
                     .parameters = event.parameters},
                    INVOKE_FUNC);
    require(made.LayOut(), table.name());
  }

  void writeFunction(ICreateTypeInfo& made, UINT index, const MemberDescription& it, INVOKEKIND kind) {
    std::vector<Described> described(it.parameters.size());
    std::vector<ELEMDESC> elements(it.parameters.size());
    SHORT optional = 0;
    for (std::size_t i = 0; i < it.parameters.size(); ++i) {
      const ParameterDescription& parameter = it.parameters[i];
      describe(made, parameter.type, parameter.byReference, described[i]);
      elements[i].tdesc = described[i].type;
      elements[i].paramdesc.wParamFlags =
          static_cast<USHORT>(PARAMFLAG_FIN | (parameter.byReference ? PARAMFLAG_FOUT : 0) |
                              (parameter.optional ? PARAMFLAG_FOPT : 0));
      if (parameter.optional) ++optional;
    }
    Described result;
    describe(made, it.type, false, result);
    FUNCDESC function{};
    function.memid = it.id;
    function.funckind = FUNC_DISPATCH;
    function.invkind = kind;
    function.callconv = CC_STDCALL;
    function.lprgelemdescParam = elements.data();
    function.cParams = static_cast<SHORT>(elements.size());
    function.cParamsOpt = 0; // counts trailing variants only
    function.elemdescFunc.tdesc = result.type;
    function.wFuncFlags = static_cast<WORD>(it.hidden ? FUNCFLAG_FHIDDEN | FUNCFLAG_FRESTRICTED : 0);
    require(made.AddFuncDesc(index, &function), it.name);
    // The halves of a property share the name of the first one.
    const std::vector<std::string_view> names = [&] {
      std::vector<std::string_view> all{it.name};
      for (const ParameterDescription& parameter : it.parameters) all.push_back(parameter.name);
      if (kind == INVOKE_PROPERTYPUT || kind == INVOKE_PROPERTYPUTREF) all.pop_back();
      return all;
    }();
    std::vector<std::wstring> wideNames;
    for (const std::string_view name : names) wideNames.push_back(wide(name));
    std::vector<LPOLESTR> pointers;
    for (std::wstring& name : wideNames) pointers.push_back(name.data());
    require(made.SetFuncAndParamNames(index, pointers.data(), static_cast<UINT>(pointers.size())), it.name);
    if (!it.help.empty()) require(made.SetFuncDocString(index, Bstr(it.help).get()), it.name);
  }

  void describe(ICreateTypeInfo& made, const Type& type, bool byReference, Described& described) {
    TYPEDESC plain{};
    plain.vt = kindOf(type);
    if (plain.vt == VT_USERDEFINED) {
      // An object is a pointer to its interface, an enumeration is itself.
      const bool isObject = type.kind == TypeKind::Object;
      plain.hreftype = reference(made, (isObject ? "_" : "") + std::string(type.of));
      if (isObject) {
        described.inner = plain;
        plain = {};
        plain.vt = VT_PTR;
        plain.lptdesc = &described.inner;
      }
    }
    if (byReference) {
      described.target = plain;
      plain = {};
      plain.vt = VT_PTR;
      plain.lptdesc = &described.target;
    }
    described.type = plain;
  }

  static VARTYPE kindOf(const Type& type) {
    switch (type.kind) {
    case TypeKind::None:
      return VT_VOID;
    case TypeKind::Boolean:
      return VT_BOOL;
    case TypeKind::Int16:
      return VT_I2;
    case TypeKind::Int32:
      return VT_I4;
    case TypeKind::Double:
      return VT_R8;
    case TypeKind::Date:
      return VT_DATE;
    case TypeKind::Text:
      return VT_BSTR;
    case TypeKind::Any:
      return VT_VARIANT;
    case TypeKind::Object:
      return type.of.empty() ? VT_DISPATCH : VT_USERDEFINED;
    case TypeKind::Enumeration:
      return VT_USERDEFINED;
    }
    return VT_VARIANT;
  }

  HREFTYPE reference(ICreateTypeInfo& made, const std::string& name) {
    const auto described = query<ITypeInfo>(types_.at(name).get(), IID_ITypeInfo);
    HREFTYPE type = 0;
    require(made.AddRefTypeInfo(described.get(), &type), name);
    return type;
  }

  void writeClass(const ClassIds& ids) {
    const auto* const table = tableOf(ids.name);
    const auto made =
        add(std::string(ids.name), TKIND_COCLASS, ids.classId, TYPEFLAG_FCANCREATE, table->help());
    require(made->AddImplType(0, reference(*made.get(), "_" + std::string(ids.name))), ids.name);
    require(made->SetImplTypeFlags(0, IMPLTYPEFLAG_FDEFAULT), ids.name);
    if (!table->events().empty()) {
      require(made->AddImplType(1, reference(*made.get(), "__" + std::string(ids.name))), ids.name);
      require(made->SetImplTypeFlags(1, IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE), ids.name);
    }
    require(made->LayOut(), ids.name);
  }

  Pointer<ICreateTypeLib2> library_;
  Pointer<ITypeInfo> dispatch_;
  std::map<std::string, Pointer<ICreateTypeInfo>> types_;
};

} // namespace

void writeTypeLibrary(const std::wstring& file, SYSKIND kind) { Writer(file, kind).write(); }

} // namespace qx::com
