#pragma once

#include "host/loader/component.h"

namespace npar_host {

/// The exports of a component that is linked in, by their own names.
[[nodiscard]] inline ComponentExports LinkedExports() {
  return {
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
}

}  // namespace npar_host
