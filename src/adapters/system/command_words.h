// A command line as the programs of Windows take it apart.
#pragma once

#include <string>
#include <string_view>

namespace qx {

/// Appends a word: one with blanks stands between quotation marks, and a quotation mark and the backslashes
/// before it each have a backslash before them.
void appendWord(std::wstring& line, std::wstring_view word);

} // namespace qx
