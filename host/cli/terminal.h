#pragma once

#include <cstddef>

namespace npar_host {

/// Is the descriptor a terminal?
[[nodiscard]] bool IsTerminal(int descriptor);
/// Columns of the terminal behind the descriptor; 80 where it does not tell.
[[nodiscard]] std::size_t TerminalColumns(int descriptor);
/// False for TERM=dumb, a terminal that only types.
[[nodiscard]] bool TerminalKnowsEscapes();
/// Does the environment's locale write UTF-8? The program's own stays the C locale.
[[nodiscard]] bool LocaleIsUtf8();
/// Is the variable set, to something?
[[nodiscard]] bool IsInEnvironment(const char* name);

}  // namespace npar_host
