#include <CLI/CLI.hpp>
#include <memory>

#include "host/cli/commands.h"
#include "host/cli/output.h"
#include "host/cli/test_registry.h"
#include "host/cli/word_list.h"
#include "host/data/input_error.h"
#include "host/render/renderers.h"

namespace npar_host {
namespace {

constexpr const char* kExamples = R"(Examples:
  npar completion bash > ~/.local/share/bash-completion/completions/npar
  npar completion zsh > ~/.zfunc/_npar
)";

std::string Joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

std::string OptionWords(const CLI::App& command) {
  std::vector<std::string> words;
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) words.push_back("--" + name);
  }
  return Joined(words);
}

std::string FormWords() {
  std::vector<std::string> words;
  for (const Renderer& renderer : AllRenderers()) words.emplace_back(renderer.name);
  return Joined(words);
}

// One line of a shell's case statement: the words after an option, and the options of a command.
std::string BashScript(const CLI::App& program) {
  std::vector<std::string> commands;
  std::string options;
  for (const CLI::App* command : program.get_subcommands({})) {
    commands.push_back(command->get_name());
    options += "    " + command->get_name() + ") words=\"" + OptionWords(*command) + "\" ;;\n";
  }
  return R"(_npar() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} words=
  COMPREPLY=()
  if [ "$COMP_CWORD" -eq 1 ]; then
    COMPREPLY=($(compgen -W ")" +
         Joined(commands) + R"( --help" -- "$word"))
    return
  fi
  case $before in
    --test) words=")" +
         Joined(TestNames()) + R"(" ;;
    --as|--report) words=")" +
         FormWords() + R"(" ;;
    --missing) words="analysis listwise" ;;
    --separator) words="comma semicolon tab" ;;
  esac
  if [ -n "$words" ]; then
    COMPREPLY=($(compgen -W "$words" -- "$word"))
    return
  fi
  case ${COMP_WORDS[1]} in
)" + options +
         R"(  esac
  [ "${COMP_WORDS[1]}" != tests ] || words="$words )" +
         Joined(TestNames()) + R"("
  [ "${COMP_WORDS[1]}" != completion ] || words="$words bash zsh"
  COMPREPLY=($(compgen -W "$words" -- "$word") $(compgen -f -- "$word"))
}
complete -o filenames -F _npar npar
)";
}

// zsh runs the same function through its own compatibility layer.
std::string ZshScript(const CLI::App& program) {
  return "#compdef npar\nautoload -U +X bashcompinit && bashcompinit\n" + BashScript(program);
}

}  // namespace

void AddCompletionCommand(CLI::App& program) {
  auto* command = program.add_subcommand("completion", "Prints a completion script for a shell.");
  const auto shell = std::make_shared<std::string>();
  command->add_option("shell", *shell, "bash or zsh")->required();
  command->footer(kExamples);
  command->callback([shell, &program] {
    if (*shell != "bash" && *shell != "zsh") {
      throw UsageError("there is no completion for " + Quoted(*shell) + "; there is bash and zsh");
    }
    Publish("-", *shell == "bash" ? BashScript(program) : ZshScript(program));
  });
}

}  // namespace npar_host
