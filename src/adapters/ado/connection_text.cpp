#include "adapters/ado/connection_text.h"

#include "model/text.h"

#include <algorithm>
#include <array>
#include <vector>

namespace qx::ado {
namespace {

/// "Name=value", where quotation marks or braces around a value may hold semicolons.
struct Term {
  std::string_view whole;
  std::string_view name;
  std::string value; ///< without quotation marks
};

std::size_t endOfTerm(std::string_view text, std::size_t at) {
  char closing = '\0';
  bool inValue = false;
  for (; at < text.size(); ++at) {
    const char c = text[at];
    if (closing != '\0') {
      if (c == closing) closing = '\0';
    } else if (c == ';') {
      return at;
    } else if (c == '=') {
      inValue = true;
    } else if (inValue && (c == '"' || c == '\'' || c == '{')) {
      closing = c == '{' ? '}' : c;
    }
  }
  return at;
}

std::string withoutMarks(std::string_view value) {
  if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
    value = value.substr(1, value.size() - 2);
  return std::string(value);
}

std::vector<Term> termsOf(std::string_view text) {
  std::vector<Term> terms;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = endOfTerm(text, at);
    const std::string_view whole = trimWhitespace(text.substr(at, end - at));
    at = end + 1;
    const auto equals = whole.find('=');
    if (whole.empty()) continue;
    if (equals == std::string_view::npos)
      terms.push_back({whole, whole, {}});
    else
      terms.push_back({whole, trimWhitespace(whole.substr(0, equals)),
                       withoutMarks(trimWhitespace(whole.substr(equals + 1)))});
  }
  return terms;
}

bool isOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
  return std::ranges::any_of(names, [&](std::string_view each) { return equalCodes(each, name); });
}

bool isPassword(std::string_view name) { return isOneOf(name, {"Password", "PWD"}); }

/// A value as ODBC reads it whatever it holds.
std::string braced(std::string_view value) {
  std::string text = "{";
  for (const char c : value) {
    if (c == '}') text += c;
    text += c;
  }
  return text + "}";
}

std::string sqlServerTarget(const std::vector<Term>& terms) {
  std::string target = "odbc:Driver={ODBC Driver 18 for SQL Server}";
  for (const Term& term : terms) {
    if (isOneOf(term.name, {"Data Source", "Server"})) target += ";Server=" + braced(term.value);
    if (isOneOf(term.name, {"Initial Catalog", "Database"})) target += ";Database=" + braced(term.value);
    if (isOneOf(term.name, {"User ID", "UID"})) target += ";UID=" + braced(term.value);
    if (isPassword(term.name)) target += ";PWD=" + braced(term.value);
    if (isOneOf(term.name, {"Integrated Security", "Trusted_Connection"}) &&
        isOneOf(term.value, {"SSPI", "yes", "true"}))
      target += ";Trusted_Connection=yes";
  }
  return target;
}

std::string odbcTarget(const std::vector<Term>& terms) {
  std::string target = "odbc:";
  const auto add = [&](std::string_view name, std::string_view value) {
    if (target.back() != ':') target += ';';
    target.append(name).append("=").append(value);
  };
  for (const Term& term : terms) {
    if (isOneOf(term.name, {"Provider", "Persist Security Info"})) continue;
    if (isOneOf(term.name, {"Extended Properties"})) {
      for (const Term& inner : termsOf(term.value)) add(inner.name, inner.value);
    } else if (isOneOf(term.name, {"Data Source"})) {
      add("DSN", term.value);
    } else if (isOneOf(term.name, {"User ID"})) {
      add("UID", term.value);
    } else if (isPassword(term.name)) {
      add("PWD", term.value);
    } else {
      add(term.name, term.value);
    }
  }
  return target;
}

std::string withoutPasswordTerms(const std::vector<Term>& terms) {
  std::string shown;
  for (const Term& term : terms) {
    if (isPassword(term.name)) continue;
    shown.append(shown.empty() ? "" : ";").append(term.whole);
  }
  return shown;
}

} // namespace

std::string withoutPasswords(std::string_view connectionString) {
  std::string shown;
  for (const Term& term : termsOf(connectionString)) {
    if (isPassword(term.name)) continue;
    if (!shown.empty()) shown += ';';
    // It holds the text of another provider.
    if (equalCodes(term.name, "Extended Properties"))
      shown.append(term.name).append("=\"").append(withoutPasswordTerms(termsOf(term.value))).append("\"");
    else
      shown += term.whole;
  }
  return shown;
}

std::optional<std::string> programTarget(std::string_view connectionString) {
  const std::vector<Term> terms = termsOf(connectionString);
  const auto provider =
      std::ranges::find_if(terms, [](const Term& term) { return equalCodes(term.name, "Provider"); });
  if (terms.empty()) return std::nullopt;
  if (provider == terms.end()) return odbcTarget(terms);
  const std::string name = asciiLower(provider->value);
  if (name.starts_with("msdasql")) return odbcTarget(terms);
  if (name.starts_with("sqloledb") || name.starts_with("msoledbsql") || name.starts_with("sqlncli"))
    return sqlServerTarget(terms);
  return std::nullopt;
}

} // namespace qx::ado
