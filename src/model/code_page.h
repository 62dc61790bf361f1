// The single-byte code page 1252 of job files and profile files, and UTF-8.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qx {

/// The UTF-8 text of bytes of code page 1252. The five bytes that the code page leaves undefined become the
/// control characters of the same number, so that every byte survives a round trip.
std::string textFromCodePage(std::string_view bytes);
/// Appends the same to a text.
void appendTextFromCodePage(std::string& text, std::string_view bytes);

/// Appends the bytes of a UTF-8 text. A character that the code page lacks, and every malformed byte, becomes
/// "?". Returns how many did.
std::size_t appendCodePage(std::string& bytes, std::string_view text);

} // namespace qx
