#include <CLI/CLI.hpp>
#include <memory>

#include "host/cli/commands.h"
#include "host/cli/output.h"
#include "host/render/message_text.h"

namespace npar_host {

void AddExplainCommand(CLI::App& program) {
  auto* command = program.add_subcommand(
      "explain", "Prints the text of a message code and what to do about it.");
  const auto code = std::make_shared<int>(0);
  command->add_option("code", *code, "message code, such as 220010")->required();
  command->footer("Example:\n  npar explain 220010\n");
  command->callback([code] { Publish("-", MessageText(*code, {}) + '\n'); });
}

}  // namespace npar_host
