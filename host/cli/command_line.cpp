#include "host/cli/command_line.h"

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <exception>
#include <sstream>
#include <string>
#include <vector>

#include "host/cli/commands.h"
#include "host/cli/output.h"
#include "host/data/input_error.h"
#include "host/data/near_miss.h"

namespace npar_host {
namespace {

constexpr const char* kExamples = R"(Examples:
  npar analyse examples/sleep.csv --related drug1,drug2
  npar analyse examples/sleep.csv --related drug1,drug2 --test sign --test wilcoxon-pairs
  npar run --params params.xml --data data.csv --out result.xml
  npar report result.xml --as text
Each command has its own --help.

Exit codes: 0 success; 1 the component refused the run; 2 wrong usage, unreadable
input or output that can't be written; 130 cancelled with Ctrl-C.
)";

int Complain(const std::string& text) {
  std::fprintf(stderr, "npar: %s\n", text.c_str());
  return kExitUsage;
}

// What to say of a first word that is no command; empty where it is one.
std::string UnknownCommand(const CLI::App& app, int argc, char** argv) {
  if (argc < 2) return {};
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
  const std::string word = argv[1];
  for (const std::string& name : names) {
    if (word == name) return {};
  }
  if (word.starts_with('-')) return {};
  return "there is no command " + Quoted(word) + NearMiss(word, names);
}

}  // namespace

int RunCommandLine(int argc, char** argv) {
  // A closed pipe is then an error of the write, which is reported.
  std::signal(SIGPIPE, SIG_IGN);

  CLI::App app("Nonparametric hypothesis tests on tables of data.", "npar");
  app.require_subcommand(1);
  app.footer(kExamples);
  int exitCode = kExitSuccess;
  AddRunCommand(app, exitCode);
  AddAnalyseCommand(app, exitCode);
  AddReportCommand(app);
  AddExplainCommand(app);
  AddTestsCommand(app);
  AddInfoCommand(app);
  AddCompletionCommand(app);
  try {
    app.parse(argc, argv);
    return exitCode;
  } catch (const CLI::ParseError& error) {
    std::ostringstream help;
    if (app.exit(error, help, help) == 0) {
      try {
        Publish("-", help.str());
        return kExitSuccess;
      } catch (const OutputError& failure) {
        return Complain(failure.what());
      }
    }
    const std::string unknown = UnknownCommand(app, argc, argv);
    return Complain((unknown.empty() ? error.what() : unknown) +
                    "\nRun npar --help or npar COMMAND --help for the usage.");
  } catch (const std::exception& error) {
    return Complain(error.what());
  }
}

}  // namespace npar_host
