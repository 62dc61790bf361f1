// Stands in for the window program: writes the database that it was given and the number of its arguments
// into a file beside itself, ends at once with status 3 while there is a file ".refuse", and lives as long as
// one
// ".open".
#include <windows.h>

#include <cstdio>
#include <string>

int wmain(int count, wchar_t** /*arguments*/) {
  std::wstring file(32768, L'\0');
  file.resize(GetModuleFileNameW(nullptr, file.data(), static_cast<DWORD>(file.size())));
  std::wstring database(32768, L'\0');
  database.resize(GetEnvironmentVariableW(L"QXIMPORTJOB_DB", database.data(), 32768));
  const auto exists = [&](const wchar_t* ending) {
    return GetFileAttributesW((file + ending).c_str()) != INVALID_FILE_ATTRIBUTES;
  };
  if (FILE* const log = _wfopen((file + L".log").c_str(), L"ab, ccs=UTF-16LE")) {
    std::fwprintf(log, L"%ls|%d;", database.c_str(), count - 1);
    std::fclose(log);
  }
  if (exists(L".refuse")) return 3;
  while (exists(L".open")) Sleep(20);
  return 0;
}
