#pragma once

#include <cstddef>

namespace npar_host {

inline constexpr int kStandardOutput = 1;  // descriptors
inline constexpr int kStandardError = 2;

/// Is the descriptor a terminal?
[[nodiscard]] bool IsTerminal(int descriptor);
/// Columns of the terminal behind the descriptor; 80 where it does not tell.
[[nodiscard]] std::size_t TerminalColumns(int descriptor);
/// False for a terminal that only types.
[[nodiscard]] bool TerminalKnowsEscapes();
/// Does what reads the program's output take it for UTF-8? The program's own locale stays C.
[[nodiscard]] bool LocaleIsUtf8();
/// Is the variable set, to something?
[[nodiscard]] bool IsInEnvironment(const char* name);

}  // namespace npar_host
