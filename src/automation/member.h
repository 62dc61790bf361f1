// Members of a class table, made from pointers to the members of a class or to functions on it.
#pragma once

#include "automation/automation_error.h"
#include "automation/class_object.h"
#include "automation/class_table.h"
#include "model/field_table.h"

#include <concepts>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace qx::automation {

/// How a C++ type travels: `type`, `read` from a variant and `write` into one. Specialised for each type that
/// members take or give.
template <class T>
struct Content;

template <>
struct Content<bool> {
  static constexpr Type type{TypeKind::Boolean};
  static bool read(ObjectContext& /*context*/, const Variant& value) { return truthOf(value); }
  static Variant write(ObjectContext& /*context*/, bool value) { return value; }
};

template <>
struct Content<std::int16_t> {
  static constexpr Type type{TypeKind::Int16};
  static std::int16_t read(ObjectContext& /*context*/, const Variant& value) { return int16Of(value); }
  static Variant write(ObjectContext& /*context*/, std::int16_t value) { return value; }
};

template <>
struct Content<std::int32_t> {
  static constexpr Type type{TypeKind::Int32};
  static std::int32_t read(ObjectContext& /*context*/, const Variant& value) { return int32Of(value); }
  static Variant write(ObjectContext& /*context*/, std::int32_t value) { return value; }
};

template <>
struct Content<double> {
  static constexpr Type type{TypeKind::Double};
  static double read(ObjectContext& /*context*/, const Variant& value) { return doubleOf(value); }
  static Variant write(ObjectContext& /*context*/, double value) { return value; }
};

template <>
struct Content<std::string> {
  static constexpr Type type{TypeKind::Text};
  static std::string read(ObjectContext& /*context*/, const Variant& value) { return textOf(value); }
  static Variant write(ObjectContext& /*context*/, std::string value) { return Variant(std::move(value)); }
};

template <>
struct Content<Date> {
  static constexpr Type type{TypeKind::Date};
  static Date read(ObjectContext& /*context*/, const Variant& value) { return momentOf(value).date; }
  static Variant write(ObjectContext& /*context*/, const Date& value) { return DateTime{value}; }
};

template <>
struct Content<Value> {
  static constexpr Type type{TypeKind::Any};
  static Value read(ObjectContext& /*context*/, const Variant& value) { return valueOf(value); }
  static Variant write(ObjectContext& /*context*/, const Value& value) { return variantOf(value); }
};

/// As it comes, but not as a reference.
template <>
struct Content<Variant> {
  static constexpr Type type{TypeKind::Any};
  static Variant read(ObjectContext& /*context*/, const Variant& value) { return value.value(); }
  static Variant write(ObjectContext& /*context*/, Variant value) { return value; }
};

/// An object of any class.
template <>
struct Content<ObjectPointer> {
  static constexpr Type type{TypeKind::Object};
  static ObjectPointer read(ObjectContext& /*context*/, const Variant& value) { return objectOf(value); }
  static Variant write(ObjectContext& /*context*/, ObjectPointer value) { return Variant(std::move(value)); }
};

/// The public name of an enumeration: specialised, as `name`, for each one that members take or give.
template <class Enumeration>
struct EnumerationOf;

template <class E>
requires std::is_enum_v<E>
struct Content<E> {
  static constexpr Type type{TypeKind::Enumeration, EnumerationOf<E>::name};
  /// Any value of the underlying type: members compare it with those that they know.
  static E read(ObjectContext& context, const Variant& value) {
    return static_cast<E>(Content<std::underlying_type_t<E>>::read(context, value));
  }
  static Variant write(ObjectContext& /*context*/, E value) { return static_cast<std::int32_t>(value); }
};

/// An object of a public class, or `Nothing`.
template <class T>
requires requires { ClassOf<T>::table(); }
struct Content<std::shared_ptr<T>> {
  static constexpr Type type{TypeKind::Object, ClassOf<T>::name};
  static std::shared_ptr<T> read(ObjectContext& /*context*/, const Variant& value) {
    const ObjectPointer object = objectOf(value);
    if (!object) return nullptr;
    if (auto target = targetOf<T>(object)) return target;
    throw AutomationError(ErrorNumber::TypeMismatch,
                          "Das Objekt der Klasse " + std::string(object->className()) +
                              " ist keines der Klasse " + std::string(ClassOf<T>::name) + ".");
  }
  static Variant write(ObjectContext& context, const std::shared_ptr<T>& value) {
    return context.objectFor(value);
  }
};

/// How an argument is held during a call, for a parameter of the C++ type `A`.
template <class A>
struct Passed {
  using Held = std::remove_cvref_t<A>;
  static constexpr Type type = Content<Held>::type;
  // What a member may assign comes back.
  static constexpr bool comesBack =
      std::is_lvalue_reference_v<A> && !std::is_const_v<std::remove_reference_t<A>>;

  Held held{};

  void read(ObjectContext& context, const Variant& given) {
    if constexpr (comesBack)
      readLeniently(context, given);
    else
      held = Content<Held>::read(context, given);
  }
  A pass() { return static_cast<A>(held); }
  Variant result(ObjectContext& context) { return Content<Held>::write(context, std::move(held)); }

private:
  /// The variable of an answer may hold anything before: scripts do not even declare its kind.
  void readLeniently(ObjectContext& context, const Variant& given) {
    try {
      held = Content<Held>::read(context, given);
    } catch (const AutomationError&) {
      held = {};
    }
  }
};

template <>
struct Passed<std::string_view> {
  static constexpr Type type{TypeKind::Text};
  static constexpr bool comesBack = false;

  std::string held;

  void read(ObjectContext& /*context*/, const Variant& given) { held = textOf(given); }
  std::string_view pass() const { return held; }
};

template <>
struct Passed<std::optional<std::string_view>> {
  static constexpr Type type{TypeKind::Text};
  static constexpr bool comesBack = false;

  std::optional<std::string> held;

  void read(ObjectContext& /*context*/, const Variant& given) { held = textOf(given); }
  std::optional<std::string_view> pass() const { return held; }
};

/// An answer that is made only when it is wanted.
template <class T>
struct Passed<T*> {
  static constexpr Type type = Content<T>::type;
  static constexpr bool comesBack = true;

  std::optional<T> held;

  void read(ObjectContext& /*context*/, const Variant& /*given*/) { held.emplace(); }
  T* pass() { return held ? &*held : nullptr; }
  Variant result(ObjectContext& context) { return Content<T>::write(context, std::move(*held)); }
};

/// A public object that the member only reads.
template <class T>
requires requires { ClassOf<T>::table(); }
struct Passed<const T&> {
  static constexpr Type type = Content<std::shared_ptr<T>>::type;
  static constexpr bool comesBack = false;

  std::shared_ptr<T> held;

  void read(ObjectContext& context, const Variant& given) {
    held = Content<std::shared_ptr<T>>::read(context, given);
    if (!held) throw AutomationError(ErrorNumber::ObjectNotSet, "Die Objektvariable ist nicht festgelegt.");
  }
  const T& pass() const { return *held; }
};

/// The name of a parameter, and what its C++ type does not tell.
struct Named {
  std::string_view name;
  bool optional = false;
  bool byReference = false;
  std::optional<Type> declared = {};

  constexpr Named(const char* text) : name(text) {}
  /// Declared by reference, though nothing comes back.
  constexpr Named reference() const {
    Named changed = *this;
    changed.byReference = true;
    return changed;
  }
  /// Declared more widely than the member needs.
  constexpr Named as(Type type) const {
    Named changed = *this;
    changed.declared = type;
    return changed;
  }
};

constexpr Named optional(const char* name) {
  Named named = name;
  named.optional = true;
  return named;
}

/// The target of a call together with its automation object.
template <class Target>
struct CallOn {
  Target& target;
  const ObjectPointer& self;
};

namespace detail {

/// The parameters of a function, and the call with them.
template <class Target, class R, class... A>
struct Signature {
  using Result = R;
  using Held = std::tuple<Passed<A>...>;
  static constexpr std::size_t count = sizeof...(A);

  template <class... N>
  static std::vector<ParameterDescription> describe(const N&... names) {
    static_assert(sizeof...(N) == count, "every parameter needs its name");
    std::vector<ParameterDescription> all;
    [[maybe_unused]] const auto add = [&](const Named& named, Type type, bool comesBack) {
      all.push_back(
          {named.name, named.declared.value_or(type), named.optional, named.byReference || comesBack});
    };
    (add(Named(names), Passed<A>::type, Passed<A>::comesBack), ...);
    return all;
  }

  template <class Function>
  static Variant call(CallFrame& frame, Function&& function) {
    Held held;
    return callWith(frame, function, held, std::index_sequence_for<A...>());
  }

private:
  template <class Function, std::size_t... I>
  static Variant callWith(CallFrame& frame, Function& function, Held& held,
                          std::index_sequence<I...> /*places*/) {
    (readOne(frame, I, std::get<I>(held)), ...);
    Variant result;
    if constexpr (std::is_void_v<R>)
      function(std::get<I>(held).pass()...);
    else
      result = Content<std::remove_cvref_t<R>>::write(frame.context, function(std::get<I>(held).pass()...));
    (giveBack(frame, I, std::get<I>(held)), ...);
    return result;
  }

  template <class P>
  static void readOne(CallFrame& frame, std::size_t index, P& held) {
    if (!frame.arguments[index].value().isMissing()) held.read(frame.context, frame.arguments[index]);
  }

  template <class P>
  static void giveBack(CallFrame& frame, std::size_t index, P& held) {
    if constexpr (P::comesBack)
      if (Variant* const variable = frame.arguments[index].variable()) {
        Variant* last = variable;
        while (Variant* const next = last->variable()) last = next;
        *last = held.result(frame.context);
      }
  }
};

template <class Target>
Target& targetIn(CallFrame& frame) {
  return *static_cast<Target*>(frame.target);
}

/// The signature of a member function, of a function on the target or the call, or of one without either.
template <class Target, class F>
struct SignatureOf;

template <class Target, class Owner, class R, bool raises, class... A>
struct SignatureOf<Target, R (Owner::*)(A...) noexcept(raises)> : Signature<Target, R, A...> {
  static Variant invoke(CallFrame& frame, R (Owner::*function)(A...) noexcept(raises)) {
    auto& target = targetIn<Target>(frame);
    return Signature<Target, R, A...>::call(
        frame, [&](A... a) -> R { return (target.*function)(std::forward<A>(a)...); });
  }
};

template <class Target, class Owner, class R, bool raises, class... A>
struct SignatureOf<Target, R (Owner::*)(A...) const noexcept(raises)> : Signature<Target, R, A...> {
  static Variant invoke(CallFrame& frame, R (Owner::*function)(A...) const noexcept(raises)) {
    const auto& target = targetIn<Target>(frame);
    return Signature<Target, R, A...>::call(
        frame, [&](A... a) -> R { return (target.*function)(std::forward<A>(a)...); });
  }
};

template <class Target, class R, class... A>
struct SignatureOf<Target, R (*)(A...)> : Signature<Target, R, A...> {
  static Variant invoke(CallFrame& frame, R (*function)(A...)) {
    return Signature<Target, R, A...>::call(frame,
                                            [&](A... a) -> R { return function(std::forward<A>(a)...); });
  }
};

template <class Target, class R, class... A>
struct SignatureOf<Target, R (*)(Target&, A...)> : Signature<Target, R, A...> {
  static Variant invoke(CallFrame& frame, R (*function)(Target&, A...)) {
    auto& target = targetIn<Target>(frame);
    return Signature<Target, R, A...>::call(
        frame, [&](A... a) -> R { return function(target, std::forward<A>(a)...); });
  }
};

template <class Target, class R, class... A>
struct SignatureOf<Target, R (*)(CallOn<Target>, A...)> : Signature<Target, R, A...> {
  static Variant invoke(CallFrame& frame, R (*function)(CallOn<Target>, A...)) {
    const CallOn<Target> on{targetIn<Target>(frame), frame.self};
    return Signature<Target, R, A...>::call(frame,
                                            [&](A... a) -> R { return function(on, std::forward<A>(a)...); });
  }
};

template <class R>
constexpr Type typeOfResult() {
  if constexpr (std::is_void_v<R>)
    return {};
  else
    return Content<std::remove_cvref_t<R>>::type;
}

} // namespace detail

/// Makes the members of the class `Target`. Functions are member functions of it or functions, the latter
/// with `Target&` or `CallOn<Target>` as their first parameter where they need it.
template <class Target>
struct MembersOf {
  /// A method. A parameter of a type `T&` or `T*` is by reference and comes back.
  template <class F, class... N>
  static Member method(std::string_view name, std::string_view help, F function, const N&... names) {
    using Signature = detail::SignatureOf<Target, F>;
    Member member;
    member.description = {.name = name,
                          .help = help,
                          .id = nextId,
                          .isMethod = true,
                          .type = detail::typeOfResult<typename Signature::Result>(),
                          .parameters = Signature::describe(names...)};
    member.read = [function](CallFrame& frame) { return Signature::invoke(frame, function); };
    return member;
  }

  /// A property that can only be read.
  template <class F>
  static Member property(std::string_view name, std::string_view help, F get) {
    Member member = method(name, help, get);
    member.description.isMethod = false;
    member.description.readable = true;
    return member;
  }

  /// A property with a function for each direction.
  template <class Get, class Set>
  static Member property(std::string_view name, std::string_view help, Get get, Set set) {
    Member member = property(name, help, get);
    addSetter(member, set);
    return member;
  }

  /// A property that can only be set.
  template <class Set>
  static Member setter(std::string_view name, std::string_view help, Set set) {
    Member member;
    member.description = {.name = name, .help = help, .id = nextId};
    addSetter(member, set);
    return member;
  }

  /// A property that is a variable of the target.
  template <class Owner, class T>
  static Member variable(std::string_view name, std::string_view help, T Owner::*where) {
    Member member;
    member.description = {.name = name,
                          .help = help,
                          .id = nextId,
                          .readable = true,
                          .writable = true,
                          .type = Content<T>::type};
    member.read = [where](CallFrame& frame) {
      return Content<T>::write(frame.context, detail::targetIn<Target>(frame).*where);
    };
    member.write = [where](CallFrame& frame, const Variant& value) {
      detail::targetIn<Target>(frame).*where = Content<T>::read(frame.context, value);
    };
    return member;
  }

  /// A property of a record, from its field table.
  template <class Record>
  static Member field(const Field<Record>& field) {
    return std::visit([&](auto where) { return variable(field.name, {}, where); }, field.member);
  }

private:
  template <class Set>
  static void addSetter(Member& member, Set set) {
    using Signature = detail::SignatureOf<Target, Set>;
    static_assert(Signature::count == 1);
    member.description.writable = true;
    member.description.type = Signature::describe(Named("value")).front().type;
    member.write = [set](CallFrame& frame, const Variant& value) {
      frame.arguments = {value};
      Signature::invoke(frame, set);
    };
  }
};

} // namespace qx::automation
