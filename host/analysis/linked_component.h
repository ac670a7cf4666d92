#pragma once

#include "host/loader/component.h"

namespace npar_host {

/// The component that is linked into this library, initialised once for the process. From any
/// thread.
[[nodiscard]] const ComponentLibrary& LinkedComponent();

}  // namespace npar_host
