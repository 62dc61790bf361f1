// The wide command line of Windows as UTF-8.
#include "adapters/system/program_entry.h"
#include "adapters/system/wide_text.h"

#include <windows.h>

#include <shellapi.h>

#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <string>
#include <vector>

namespace qx {
namespace {

/// The console shows UTF-8 until the program ends.
class ConsoleInUtf8 {
public:
  ConsoleInUtf8() : before_(GetConsoleOutputCP()) { SetConsoleOutputCP(CP_UTF8); }
  ConsoleInUtf8(const ConsoleInUtf8&) = delete;
  ConsoleInUtf8& operator=(const ConsoleInUtf8&) = delete;
  ~ConsoleInUtf8() { SetConsoleOutputCP(before_); }

private:
  UINT before_;
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
  for (std::FILE* const stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
  const ConsoleInUtf8 console;
  std::vector<std::string> texts = commandLine();
  std::vector<char*> arguments;
  for (std::string& text : texts) arguments.push_back(text.data());
  arguments.push_back(nullptr);
  return program(static_cast<int>(texts.size()), arguments.data());
}

} // namespace qx
