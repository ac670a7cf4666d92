#pragma once

#include <string>
#include <vector>

/// What a program shows on a terminal of that many columns, escape sequences included, with lines
/// ending in "\n". Standard output and standard error are the terminal; `typed` are the keys that
/// were struck before the program looked.
[[nodiscard]] std::string RunInTerminal(const std::vector<std::string>& command, int columns,
                                        const std::string& typed = {});

/// The text without the escape sequences that set colours and clear lines.
[[nodiscard]] std::string WithoutEscapes(const std::string& text);
