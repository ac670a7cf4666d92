#include <CLI/CLI.hpp>
#include <memory>

#include "catalogue/catalogue.h"
#include "host/cli/commands.h"
#include "host/cli/output.h"
#include "host/data/input_error.h"
#include "host/data/near_miss.h"
#include "host/request/automatic_choice.h"
#include "host/request/catalogue_json.h"
#include "host/request/test_request.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

std::string Describe(const catalogue::Card& test) {
  std::string text =
      test.name + "\n  " + test.title + "\n  fields: " + test.fields.description + "\n";
  for (const catalogue::Option& option : test.options) {
    text += "  " + option.name + "=" + option.syntax + "\n      " + option.help +
            "; default: " + option.byDefault + "\n";
  }
  return text;
}

std::string DescribeAll() {
  std::string text;
  catalogue::Family family{};
  for (const catalogue::Card* test : catalogue::kTests) {
    if (text.empty() || test->family != family) {
      family = test->family;
      const std::string heading = "Tests of --" + FamilyName(family) + " fields" +
                                  (family == catalogue::Family::Independent ? ", with --by" : "");
      text += (text.empty() ? "" : "\n") + heading + "\n" + std::string(heading.size(), '=') + "\n";
    }
    text += '\n' + Describe(*test);
  }
  return text + "\n" + kAutomaticChoice;
}

}  // namespace

void AddTestsCommand(CLI::App& program) {
  auto* command =
      program.add_subcommand("tests", "Lists every test: its fields and its options for --test.");
  const auto name = std::make_shared<std::string>();
  const auto asJson = std::make_shared<bool>(false);
  command->add_option("NAME", *name, "one test only")->type_name("TEST");
  command->add_flag("--json", *asJson, "for programs, with keys, ranges and message codes");
  command->footer("Examples:\n  npar tests\n  npar tests mann-whitney\n  npar tests --json\n");
  command->callback([name, asJson] {
    const catalogue::Card* test = catalogue::FindTest(*name);
    if (test == nullptr && !name->empty()) {
      throw UsageError("there is no test " + Quoted(*name) + NearMiss(*name, TestNames()));
    }
    if (*asJson) {
      Publish("-", CatalogueJson(test));
    } else {
      Publish("-", test == nullptr ? DescribeAll() : Describe(*test));
    }
  });
}

}  // namespace npar_host
