#pragma once

#include "host/render/json_values.h"
#include "host/render/result_model.h"

namespace npar_host {

/// The extended figures of a test that has some: its figures by name, its tables as lists of
/// objects.
[[nodiscard]] Json ExtendedObject(const ResultDocument& document, const ResultTest& test);

}  // namespace npar_host
