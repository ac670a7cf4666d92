#include <CLI/CLI.hpp>
#include <memory>

#include "host/cli/commands.h"
#include "host/cli/output.h"
#include "host/cli/test_registry.h"
#include "host/data/input_error.h"
#include "host/data/near_miss.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

std::string Describe(const TestDescription& test) {
  std::string text =
      std::string(test.name) + "\n  " + test.title + "\n  fields: " + test.fields + "\n";
  for (const TestOption& option : test.options) {
    text += std::string("  ") + option.name + "=" + option.syntax + "\n      " + option.help +
            "; default: " + option.defaultText + "\n";
  }
  return text;
}

std::string DescribeAll() {
  std::string text;
  TestFamily family{};
  for (const TestDescription& test : AllTests()) {
    if (text.empty() || test.family != family) {
      family = test.family;
      const std::string heading = std::string("Tests of --") + FamilyName(family) + " fields" +
                                  (family == TestFamily::Independent ? ", with --by" : "");
      text += (text.empty() ? "" : "\n") + heading + "\n" + std::string(heading.size(), '=') + "\n";
    }
    text += '\n' + Describe(test);
  }
  return text;
}

}  // namespace

void AddTestsCommand(CLI::App& program) {
  auto* command =
      program.add_subcommand("tests", "Lists every test: its fields and its options for --test.");
  const auto name = std::make_shared<std::string>();
  command->add_option("NAME", *name, "one test only")->type_name("TEST");
  command->footer("Examples:\n  npar tests\n  npar tests mann-whitney\n");
  command->callback([name] {
    const TestDescription* test = FindTest(*name);
    if (test == nullptr && !name->empty()) {
      throw UsageError("there is no test " + Quoted(*name) + NearMiss(*name, TestNames()));
    }
    Publish("-", test == nullptr ? DescribeAll() : Describe(*test));
  });
}

}  // namespace npar_host
