#include "host/cli/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <new>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "host/cli/commands.h"
#include "host/cli/output.h"
#include "host/cli/trace.h"
#include "host/data/input_error.h"
#include "host/data/join_words.h"
#include "host/data/near_miss.h"
#include "host/os/standard_streams.h"

namespace npar_host {
namespace {

constexpr const char* kExamples = R"(Examples:
  npar analyse examples/sleep.csv --related drug1,drug2
  npar analyse examples/sleep.csv --related drug1,drug2 --test sign --test wilcoxon-pairs
  npar run --params params.xml --data data.csv --out result.xml
  npar report result.xml --as text
Each command has its own --help.

Exit codes: 0 success; 1 the component refused the run; 2 wrong usage, unreadable
input or output that can't be written; 3 every test of an analysis failed;
130 cancelled with Ctrl-C.
)";

int Complain(const std::string& text) {
  Tell("npar: " + text);
  return kExitUsage;
}

bool IsIn(const std::vector<std::string>& names, const std::string& name) {
  return std::ranges::find(names, name) != names.end();
}

// What to say of words that make no command.
std::string CommandProblem(const CLI::App& app, const std::vector<std::string>& words) {
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
  if (words.empty()) return "no command is given; there is " + JoinWords(names, " and ");
  if (words[0].starts_with('-') || IsIn(names, words[0])) return {};
  return "there is no command " + Quoted(words[0]) + NearMiss(words[0], names);
}

// What to say of an option that the command does not have; empty where it has all.
std::string OptionProblem(const CLI::App& app, const std::vector<std::string>& words) {
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands()) {
    for (const CLI::Option* option : command->get_options()) {
      for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    }
  }
  for (const std::string& word : words) {
    const std::string name = word.substr(0, word.find('='));
    if (!name.starts_with("--") || name == "--" || IsIn(names, name)) continue;
    return "there is no option " + name + NearMiss(name, names);
  }
  return {};
}

std::string Problem(const CLI::ParseError& error, const CLI::App& app,
                    const std::vector<std::string>& words) {
  std::string problem = CommandProblem(app, words);
  if (problem.empty() && dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) {
    problem = OptionProblem(app, words);
  }
  if (!problem.empty()) return problem;
  problem = error.what();
  constexpr std::string_view kNoNumber = "Could not convert: ";  // "--confidence = abc"
  if (problem.starts_with(kNoNumber)) {
    problem = "a number is wanted: " + problem.substr(kNoNumber.size());
  }
  return problem;
}

// What a script's unset variable leaves of a name is no file, nor the wish for none.
void RefuseEmptyNames(CLI::App& app) {
  const std::set<std::string> named = {"FILE", "DIR", "libnpar.so"};
  for (CLI::App* command : app.get_subcommands({})) {
    for (CLI::Option* option : command->get_options()) {
      if (!named.contains(option->get_type_name())) continue;
      option->check([](const std::string& name) -> std::string {
        return name.empty() ? "the name of the file or folder is empty" : "";
      });
    }
  }
}

}  // namespace

int RunCommandLine(int argc, char** argv) {
  PrepareStandardStreams();
  const std::vector<std::string> words = ProgramWords(argc, argv);
  RememberCommandLine(words);

  CLI::App app("Nonparametric hypothesis tests on tables of data.", "npar");
  app.require_subcommand(1);
  app.allow_windows_style_options(false);  // a leading slash begins a path
  app.set_version_flag("--version", "npar " NPAR_VERSION, "print the version and exit");
  app.footer(kExamples);
  int exitCode = kExitSuccess;
  AddRunCommand(app, exitCode);
  AddAnalyseCommand(app, exitCode);
  AddDescribeCommand(app);
  AddReportCommand(app);
  AddExplainCommand(app);
  AddTestsCommand(app);
  AddInfoCommand(app);
  AddCompletionCommand(app);
  RefuseEmptyNames(app);
  try {
    app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
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
    const int code = Complain(Problem(error, app, words));
    Tell("Run npar --help or npar COMMAND --help for the usage.");
    return code;
  } catch (const std::bad_alloc&) {
    return Complain(
        "there is not enough memory; take a machine with more, or ask for fewer fields, tests or "
        "reports in one call");
  } catch (const std::exception& error) {
    return Complain(error.what());
  }
}

}  // namespace npar_host
