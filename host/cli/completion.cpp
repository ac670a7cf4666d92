#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/cli/commands.h"
#include "host/cli/output.h"
#include "host/data/input_error.h"
#include "host/render/renderers.h"
#include "host/request/test_request.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

constexpr const char* kExamples = R"(Examples:
  npar completion bash > ~/.local/share/bash-completion/completions/npar
  npar completion zsh > ~/.zfunc/_npar
)";

std::string Joined(const std::vector<std::string>& words, const char* between) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : between) + word;
  return text;
}

std::string FormWords() {
  std::vector<std::string> words;
  for (const Renderer& renderer : AllRenderers()) words.emplace_back(renderer.name);
  return Joined(words, " ");
}

std::string TestWords() { return Joined(TestNames(), " "); }

/// What follows an option, or stands behind a command, where that is one of a few words.
struct Choice {
  std::vector<std::string> contexts;
  std::string words;
};

std::vector<Choice> OptionChoices() {
  return {{{"--test"}, TestWords()},
          {{"--as", "--report"}, FormWords()},
          {{"--missing"}, "analysis listwise"},
          {{"--separator"}, "comma semicolon tab space pipe"},
          {{"--encoding"}, "utf-8 utf-16 utf-16be latin1"}};
}

std::vector<Choice> CommandChoices() {
  return {{{"tests"}, TestWords()}, {{"completion"}, "bash zsh"}};
}

const Choice* FindChoice(const std::vector<Choice>& choices, const std::string& context) {
  for (const Choice& choice : choices) {
    if (std::ranges::find(choice.contexts, context) != choice.contexts.end()) return &choice;
  }
  return nullptr;
}

std::vector<std::string> LongNames(const CLI::App& command) {
  std::vector<std::string> names;
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  return names;
}

// Lines of a case statement that set `words`.
std::string BashCases(const std::vector<Choice>& choices) {
  std::string text;
  for (const Choice& choice : choices) {
    text += "    " + Joined(choice.contexts, "|") + ") words=\"" + choice.words + "\" ;;\n";
  }
  return text;
}

// Where no word fits, bash itself completes names of files.
std::string BashScript(const CLI::App& program) {
  std::vector<std::string> commands;
  std::vector<Choice> options;
  for (const CLI::App* command : program.get_subcommands({})) {
    commands.push_back(command->get_name());
    options.push_back({{command->get_name()}, Joined(LongNames(*command), " ")});
  }
  return R"(_npar() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} words=
  if [ "$word" = = ]; then word=; elif [ "$before" = = ]; then before=${COMP_WORDS[COMP_CWORD-2]}; fi
  case $before in
)" + BashCases(OptionChoices()) +
         R"(  esac
  if [ "$COMP_CWORD" -eq 1 ]; then
    words=")" +
         Joined(commands, " ") + R"( --help"
  elif [ -n "$words" ]; then
    :
  elif [[ $word == -* ]]; then
    case ${COMP_WORDS[1]} in
)" + BashCases(options) +
         R"(    esac
  else
    case ${COMP_WORDS[1]} in
)" + BashCases(CommandChoices()) +
         R"(    esac
  fi
  COMPREPLY=($(compgen -W "$words" -- "$word"))
}
complete -o default -F _npar npar
)";
}

// Inside single quotes and a pair of brackets.
std::string ZshQuoted(const std::string& text) {
  std::string quoted;
  for (const char c : text) {
    if (c == '\'') {
      quoted += "'\\''";
    } else {
      if (c == '[' || c == ']' || c == ':' || c == '\\') quoted += '\\';
      quoted += c;
    }
  }
  return quoted;
}

bool TakesFile(const std::string& option) {
  constexpr std::string_view kFileOptions[] = {"--params", "--data", "--model", "--out",
                                               "--component"};
  return std::ranges::find(kFileOptions, option) != std::end(kFileOptions);
}

// What zsh's _arguments takes for an option: "*" for an option that may be repeated, what it does,
// and how its value is completed.
std::string ZshOption(const CLI::Option& option, const std::string& name) {
  const bool isRepeated = option.get_items_expected_max() > 1;
  std::string text =
      std::string(isRepeated ? "*" : "") + name + "[" + ZshQuoted(option.get_description()) + "]";
  if (option.get_items_expected_max() == 0) return text;
  text += ":value:";
  const std::vector<Choice> choices = OptionChoices();
  if (const Choice* choice = FindChoice(choices, name)) {
    text += "(" + choice->words + ")";
  } else if (name == "--keep-documents") {
    text += "_files -/";
  } else if (TakesFile(name)) {
    text += "_files";
  }
  return text;
}

std::string ZshArguments(const CLI::App& command) {
  std::string text = "    " + command.get_name() + ")\n      _arguments";
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) {
      text += " \\\n        '" + ZshOption(*option, "--" + name) + "'";
    }
  }
  const std::vector<Choice> choices = CommandChoices();
  if (const Choice* choice = FindChoice(choices, command.get_name())) {
    text += " \\\n        '*:argument:(" + choice->words + ")'";
  } else if (command.get_name() == "analyse" || command.get_name() == "describe" ||
             command.get_name() == "report") {
    text += " \\\n        ':file:_files'";
  }
  return text + " ;;\n";
}

// The file is the body of the function that zsh loads when npar is first completed.
std::string ZshScript(const CLI::App& program) {
  std::string commands;
  std::string arguments;
  for (const CLI::App* command : program.get_subcommands({})) {
    commands += "    '" + command->get_name() + ":" + ZshQuoted(command->get_description()) + "'\n";
    arguments += ZshArguments(*command);
  }
  return R"(#compdef npar
if (( CURRENT == 2 )); then
  local -a commands=(
)" + commands +
         R"(  )
  _describe command commands
  return
fi
local command=$words[2]
shift words
(( CURRENT -= 1 ))
case $command in
)" + arguments +
         "esac\n";
}

}  // namespace

void AddCompletionCommand(CLI::App& program) {
  auto* command = program.add_subcommand("completion", "Prints a completion script for a shell.");
  const auto shell = std::make_shared<std::string>();
  command->add_option("SHELL", *shell, "the shell")->type_name("bash|zsh")->required();
  command->footer(kExamples);
  command->callback([shell, &program] {
    if (*shell != "bash" && *shell != "zsh") {
      throw UsageError("there is no completion for " + Quoted(*shell) + "; there is bash and zsh");
    }
    Publish("-", *shell == "bash" ? BashScript(program) : ZshScript(program));
  });
}

}  // namespace npar_host
