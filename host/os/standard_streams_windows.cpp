#include <fcntl.h>
#include <io.h>
#include <windows.h>
// behind windows.h
#include <shellapi.h>

#include <cstddef>
#include <string_view>

#include "host/os/standard_streams.h"

namespace npar_host {
namespace {

std::string Utf8(std::wstring_view text) {
  const int units = static_cast<int>(text.size());
  const int bytes =
      WideCharToMultiByte(CP_UTF8, 0, text.data(), units, nullptr, 0, nullptr, nullptr);
  std::string converted(static_cast<std::size_t>(bytes), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), units, converted.data(), bytes, nullptr, nullptr);
  return converted;
}

}  // namespace

void PrepareStandardStreams() {
  for (const int descriptor : {0, 1, 2}) _setmode(descriptor, _O_BINARY);
  SetConsoleOutputCP(CP_UTF8);
  for (const DWORD name : {STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
    const HANDLE handle = GetStdHandle(name);
    DWORD mode = 0;
    if (GetConsoleMode(handle, &mode) == 0) continue;
    SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
  }
}

// argv has lost what the code page does not know.
std::vector<std::string> ProgramWords(int, char**) {
  std::vector<std::string> words;
  int count = 0;
  wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
  for (int i = 1; i < count; ++i) words.push_back(Utf8(wide[i]));
  LocalFree(wide);
  return words;
}

}  // namespace npar_host
