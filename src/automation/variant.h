// The values that travel between an automation object and its caller.
#pragma once

#include "model/date.h"
#include "model/money.h"
#include "platform/value.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace qx::automation {

class AutomationObject;
/// Null is `Nothing`.
using ObjectPointer = std::shared_ptr<AutomationObject>;

enum class VariantKind : std::uint8_t {
  Empty,   ///< never assigned
  Null,    ///< holds no valid data, as a null column
  Missing, ///< an argument that was left out
  Boolean,
  Int16,
  Int32,
  Int64,
  Double,
  Currency,
  Date,
  Text,
  Object,
  Reference, ///< to a variable of the caller
};

/// One value of any kind. A reference does not own its variable, which must outlive the call that it is
/// passed to. Texts are UTF-8 and may hold any character.
class Variant {
public:
  Variant() = default;
  Variant(bool truth) : content_(truth) {}
  Variant(std::int16_t number) : content_(number) {}
  Variant(std::int32_t number) : content_(number) {}
  Variant(std::int64_t number) : content_(number) {}
  Variant(double number) : content_(number) {}
  Variant(Money amount) : content_(amount) {}
  Variant(const DateTime& moment) : content_(moment) {}
  Variant(std::string text) : content_(std::move(text)) {}
  Variant(std::string_view text) : content_(std::string(text)) {}
  Variant(const char* text) : content_(std::string(text)) {}
  Variant(ObjectPointer object) : content_(std::move(object)) {}
  /// Copies the text first, so that a lack of memory leaves the value unchanged.
  Variant(const Variant& other) : content_(copyOf(other.content_)) {}
  Variant& operator=(const Variant& other) {
    if (this != &other) content_ = copyOf(other.content_);
    return *this;
  }
  Variant(Variant&&) noexcept = default;
  Variant& operator=(Variant&&) noexcept = default;
  ~Variant() = default;

  static Variant null() { return Variant(Content(NullContent())); }
  static Variant missing() { return Variant(Content(MissingContent())); }
  static Variant nothing() { return Variant(ObjectPointer()); }
  /// By reference: what the callee assigns arrives in `variable`.
  static Variant reference(Variant& variable) { return Variant(Content(&variable)); }

  VariantKind kind() const { return static_cast<VariantKind>(content_.index()); }
  bool isMissing() const { return kind() == VariantKind::Missing; }
  /// The caller's variable; null when it is passed by value.
  Variant* variable() const {
    const auto* const pointer = std::get_if<Variant*>(&content_);
    return pointer == nullptr ? nullptr : *pointer;
  }
  /// The value itself, or the one that the reference refers to.
  const Variant& value() const;

  template <class T>
  const T& as() const {
    return std::get<T>(content_);
  }

  /// Of the same kind and value; objects are equal when they are the same one.
  friend bool operator==(const Variant&, const Variant&) = default;

private:
  struct NullContent {
    friend bool operator==(const NullContent&, const NullContent&) = default;
  };
  struct MissingContent {
    friend bool operator==(const MissingContent&, const MissingContent&) = default;
  };
  using Content = std::variant<std::monostate, NullContent, MissingContent, bool, std::int16_t, std::int32_t,
                               std::int64_t, double, Money, DateTime, std::string, ObjectPointer, Variant*>;

  explicit Variant(Content content) : content_(std::move(content)) {}
  static Content copyOf(const Content& other) {
    const auto* const text = std::get_if<std::string>(&other);
    if (text == nullptr) return other;
    std::string copy = *text;
    return copy;
  }

  Content content_;
};

// Conversions as automation languages make them. A reference is followed, an object gives its default member,
// what was never assigned is 0, "" or False. What cannot be converted raises `AutomationError`: 13 for the
// wrong kind, 6 for a number that does not fit, 94 for Null.

/// The value of a variable, of an object's default member, or the value itself.
Variant plainValue(const Variant& value);
/// Numbers with a decimal comma, truth as "Wahr" or "Falsch", dates as "dd.mm.yyyy". A text with the
/// character NUL raises 5: no table could give it back.
std::string textOf(const Variant& value);
bool truthOf(const Variant& value);
/// Fractions are rounded, halves to the even neighbour; texts are German numbers.
std::int16_t int16Of(const Variant& value);
std::int32_t int32Of(const Variant& value);
double doubleOf(const Variant& value);
/// Null for Null and for what was never assigned or left out.
Value valueOf(const Variant& value);
DateTime momentOf(const Variant& value);
/// Raises 13 for what is no object; `Nothing` is null.
ObjectPointer objectOf(const Variant& value);
Variant variantOf(const Value& value);

/// Days since 30.12.1899 with the time as a fraction, the number behind an automation date, and back. Before
/// that day the fraction counts away from zero. Raises 6 for years outside of 100 to 9999.
double serialOf(const DateTime& moment);
DateTime momentOfSerial(double serial);

} // namespace qx::automation
