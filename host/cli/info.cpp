#include <CLI/CLI.hpp>
#include <memory>
#include <pugixml.hpp>

#include "host/cli/commands.h"
#include "host/cli/output.h"
#include "host/loader/component.h"
#include "host/os/utf8_path.h"

namespace npar_host {
namespace {

std::string Information(const std::filesystem::path& path) {
  const ComponentLibrary library(path);
  pugi::xml_document document;
  document.load_string(library.ModuleInformation().c_str());
  const pugi::xml_node module = document.select_node("//Module").node();
  if (!module) throw ComponentError("the component " + Utf8Name(path) + " tells nothing of itself");
  std::string text;
  for (const pugi::xml_attribute attribute : module.attributes()) {
    text += std::string(attribute.name()) + ": " + attribute.value() + '\n';
  }
  return text + "file: " + Utf8Name(path) + '\n';
}

}  // namespace

void AddInfoCommand(CLI::App& program) {
  auto* command = program.add_subcommand("info", "Prints what the component says of itself.");
  const auto component = std::make_shared<std::string>();
  command->add_option("--component", *component, "another component than the installed one")
      ->type_name("libnpar.so");
  command->footer("Example:\n  npar info\n");
  command->callback([component] {
    Publish("-", Information(component->empty() ? ComponentLibrary::DefaultPath()
                                                : Utf8Path(*component)));
  });
}

}  // namespace npar_host
