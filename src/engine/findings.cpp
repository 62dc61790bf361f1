#include "engine/findings.h"

#include "engine/collected_text.h"
#include "model/text.h"

namespace qx {

void Findings::add(CheckStatus severity, std::string_view finding) {
  status = worse(status, severity);
  list.emplace_back(finding);
  text += finding;
  text += crlf;
}

void Findings::append(const Findings& others) {
  status = worse(status, others.status);
  list.insert(list.end(), others.list.begin(), others.list.end());
  text += others.text;
  hints.insert(hints.end(), others.hints.begin(), others.hints.end());
}

std::string announced(const Findings& findings) {
  std::string text(findingsSentence);
  appendLine(text, findings.text);
  return text;
}

} // namespace qx
