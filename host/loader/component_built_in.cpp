// The component is linked into the program.

#include "host/loader/component.h"

namespace npar_host {
namespace {

const ComponentExports kExports = {
    .initialise = hb_initialise,
    .create = hb_create_component,
    .destroy = hb_destroy_component,
    .configure = hb_component_configure,
    .getExecutionRequirements = hb_component_getExecutionRequirements,
    .beginExecution = hb_component_beginExecution,
    .cancelExecution = hb_component_cancelExecution,
    .endExecution = hb_component_endExecution,
    .getMessages = hb_component_getMessages,
    .getModuleInformation = hb_getModuleInformation,
};

const ComponentExports& ExportsAt(const std::filesystem::path& path) {
  if (path.empty()) return kExports;
  throw ComponentError("this program has its component built in and loads no other; leave " +
                       path.string() + " out");
}

}  // namespace

ComponentLibrary::ComponentLibrary(const std::filesystem::path& path)
    : ComponentLibrary(ExportsAt(path)) {}

std::filesystem::path ComponentLibrary::DefaultPath() { return {}; }

}  // namespace npar_host
