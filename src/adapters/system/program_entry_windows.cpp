// The wide command line of Windows as UTF-8, and UTF-8 on its console.
#include "adapters/system/program_entry.h"
#include "adapters/system/whole_characters.h"
#include "adapters/system/wide_text.h"

#include <windows.h>

#include <shellapi.h>

#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace qx {
namespace {

/// Where a stream goes to a console, it gets wide texts: what a portion of bytes means there depends on the
/// console and its version.
class ConsoleStream {
public:
  ConsoleStream(std::ostream& stream, DWORD which) : stream_(stream) {
    const HANDLE console = GetStdHandle(which);
    DWORD mode = 0;
    if (GetConsoleMode(console, &mode) == 0) return;
    buffer_ = std::make_unique<WholeCharacters>([console](std::string_view text) {
      const std::wstring units = wide(text);
      DWORD written = 0;
      return WriteConsoleW(console, units.data(), static_cast<DWORD>(units.size()), &written, nullptr) != 0;
    });
    before_ = stream_.rdbuf(buffer_.get());
  }
  ConsoleStream(const ConsoleStream&) = delete;
  ConsoleStream& operator=(const ConsoleStream&) = delete;
  ~ConsoleStream() {
    if (!buffer_) return;
    stream_.flush();
    stream_.rdbuf(before_);
  }

private:
  std::ostream& stream_;
  std::unique_ptr<WholeCharacters> buffer_;
  std::streambuf* before_ = nullptr;
};

std::vector<std::string> commandLine() {
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> texts;
  for (int i = 0; i < count; ++i) texts.push_back(narrow(words[i]));
  LocalFree(static_cast<void*>(words));
  return texts;
}

} // namespace

int withUtf8(int /*count*/, char** /*arguments*/, int (*program)(int count, char** arguments)) {
  // A program of windows that was started from a console does not get that by itself.
  if (GetStdHandle(STD_ERROR_HANDLE) == nullptr) AttachConsole(ATTACH_PARENT_PROCESS);
  for (std::FILE* const stream : {stdin, stdout, stderr})
    if (_fileno(stream) >= 0) _setmode(_fileno(stream), _O_BINARY);
  const ConsoleStream output(std::cout, STD_OUTPUT_HANDLE);
  const ConsoleStream messages(std::cerr, STD_ERROR_HANDLE);
  std::vector<std::string> texts = commandLine();
  std::vector<char*> arguments;
  for (std::string& text : texts) arguments.push_back(text.data());
  arguments.push_back(nullptr);
  return program(static_cast<int>(texts.size()), arguments.data());
}

bool hasStandardError() {
  const HANDLE handle = GetStdHandle(STD_ERROR_HANDLE);
  return handle != nullptr && handle != INVALID_HANDLE_VALUE;
}

} // namespace qx
