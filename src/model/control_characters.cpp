#include "model/control_characters.h"

namespace qx {

bool isControl(std::string_view character) {
  const auto between = [&](std::string_view lead, char first, char last) {
    return character.size() == lead.size() + 1 && character.starts_with(lead) && character.back() >= first &&
           character.back() <= last;
  };
  // The second half of Latin-1's controls, line separators and marks of the writing direction.
  return between("\xC2", '\x80', '\x9F') || between("\xE2\x80", '\xA8', '\xAE') ||
         between("\xE2\x81", '\xA6', '\xA9');
}

} // namespace qx
