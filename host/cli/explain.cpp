#include <CLI/CLI.hpp>
#include <memory>

#include "catalogue/catalogue.h"
#include "host/cli/commands.h"
#include "host/cli/output.h"
#include "host/messages/messages.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

std::string Explanation(int code) {
  const catalogue::ToldCode* told = catalogue::FindCode(code);
  if (told == nullptr) {
    throw UsageError("there is no message with the code " + std::to_string(code) +
                     "; codes are those of lines such as \"error 220010: ...\"");
  }
  return KindName(told->code.kind) + " " + std::to_string(code) + ": " + FillMessage(code, {}) +
         "\nRaised by: " + told->source + "\nWhat to do: " + told->code.remedy + "\n";
}

}  // namespace

void AddExplainCommand(CLI::App& program) {
  auto* command = program.add_subcommand(
      "explain", "Prints the text of a message code and what to do about it.");
  const auto code = std::make_shared<int>(0);
  command->add_option("CODE", *code, "message code, such as 220010")
      ->type_name("NUMBER")
      ->required();
  command->footer("Example:\n  npar explain 220010\n");
  command->callback([code] { Publish("-", Explanation(*code)); });
}

}  // namespace npar_host
