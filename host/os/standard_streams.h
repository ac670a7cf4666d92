#pragma once

#include <string>
#include <vector>

namespace npar_host {

/// Makes standard input, output and error carry bytes as they are, and a write to a closed pipe an
/// error; first of all in a program.
void PrepareStandardStreams();

/// The words behind the program's name, in UTF-8.
[[nodiscard]] std::vector<std::string> ProgramWords(int argc, char** argv);

}  // namespace npar_host
