#pragma once

#include <string>
#include <vector>

namespace npar_host {

enum class ProgramOutcome { Done, Failed, NotFound };

/// Runs a program of the search path with these arguments, the first being its name, to its end;
/// `output` is what it wrote to standard output. Where the system lets no program start another it
/// is NotFound.
[[nodiscard]] ProgramOutcome RunProgram(std::vector<std::string> words, std::string& output);

}  // namespace npar_host
