#include "host/analysis/linked_component.h"

#include "frame/linked.h"

namespace npar_host {

const ComponentLibrary& LinkedComponent() {
  static const ComponentLibrary library(ComponentExports{
      .initialise = hb_initialise,
      .create = hb_create_component,
      .destroy = EndLinkedComponent,
      .configure = hb_component_configure,
      .getExecutionRequirements = hb_component_getExecutionRequirements,
      .beginExecution = hb_component_beginExecution,
      .cancelExecution = hb_component_cancelExecution,
      .endExecution = hb_component_endExecution,
      .getMessages = hb_component_getMessages,
      .getModuleInformation = hb_getModuleInformation,
  });
  return library;
}

}  // namespace npar_host
