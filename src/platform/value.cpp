#include "platform/value.h"

#include "model/text.h"

#include <array>
#include <charconv>
#include <cmath>

namespace qx {
namespace {

template <class Number>
std::optional<Number> parseWhole(std::string_view text) {
  text = trimWhitespace(text);
  if (text.size() > 1 && text.front() == '+' && text[1] != '-') text.remove_prefix(1);
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::optional<std::int64_t> wholeNumber(double number) {
  if (!(std::fabs(number) < 9.2e18) || number != std::trunc(number)) return std::nullopt;
  return static_cast<std::int64_t>(number);
}

template <class... Cases>
struct Overloaded : Cases... {
  using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

} // namespace

bool Value::isEmpty() const {
  if (const auto* text = std::get_if<std::string>(&content_)) return text->empty();
  return isNull();
}

std::string Value::text() const {
  return std::visit(Overloaded{[](std::monostate) { return std::string(); },
                               [](std::int64_t number) { return std::to_string(number); },
                               [](double number) { return plainNumber(number); },
                               [](Money amount) { return amount.toText(); },
                               [](bool truth) { return std::string(truth ? "1" : "0"); },
                               [](const std::string& text) { return text; },
                               [](const DateTime& moment) { return timeStamp(moment); }},
                    content_);
}

std::string_view Value::textView() const {
  const auto* text = std::get_if<std::string>(&content_);
  return text ? std::string_view(*text) : std::string_view();
}

std::optional<std::int64_t> Value::integer() const {
  using Result = std::optional<std::int64_t>;
  return std::visit(Overloaded{[](std::monostate) { return Result(); },
                               [](std::int64_t number) { return Result(number); },
                               [](double number) { return wholeNumber(number); },
                               [](Money amount) { return wholeNumber(amount.toDouble()); },
                               [](bool truth) { return Result(truth ? 1 : 0); },
                               [](const std::string& text) { return parseWhole<std::int64_t>(text); },
                               [](const DateTime&) { return Result(); }},
                    content_);
}

std::optional<double> Value::number() const {
  using Result = std::optional<double>;
  return std::visit(Overloaded{[](std::monostate) { return Result(); },
                               [](std::int64_t number) { return Result(static_cast<double>(number)); },
                               [](double number) { return Result(number); },
                               [](Money amount) { return Result(amount.toDouble()); },
                               [](bool truth) { return Result(truth ? 1.0 : 0.0); },
                               [](const std::string& text) { return parseWhole<double>(text); },
                               [](const DateTime&) { return Result(); }},
                    content_);
}

std::optional<Money> Value::money() const {
  if (const auto* amount = std::get_if<Money>(&content_)) return *amount;
  if (const auto* text = std::get_if<std::string>(&content_)) return Money::parse(trimWhitespace(*text));
  const auto plain = number();
  return plain ? Money::fromDouble(*plain) : std::nullopt;
}

std::optional<bool> Value::truth() const {
  if (isNull()) return false;
  const auto plain = number();
  if (!plain) return std::nullopt;
  return *plain != 0;
}

std::optional<DateTime> Value::moment() const {
  const auto* moment = std::get_if<DateTime>(&content_);
  return moment ? std::optional<DateTime>(*moment) : std::nullopt;
}

Value emptyToNull(Value value) { return value.isEmpty() ? Value::null() : std::move(value); }

std::string plainNumber(double number) {
  constexpr double most = 1e15;
  if (std::abs(number) < most && std::trunc(number) == number)
    return std::to_string(static_cast<std::int64_t>(number));
  // Unlike printf, this does not follow the locale that a window toolkit may have set.
  std::array<char, 64> buffer{};
  const auto result =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::general, 15);
  return {buffer.data(), result.ptr};
}

} // namespace qx
