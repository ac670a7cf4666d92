#include "host/cli/command_line.h"

int main(int argc, char** argv) { return npar_host::RunCommandLine(argc, argv); }
