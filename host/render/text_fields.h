#pragma once

#include <cstddef>

#include "host/render/result_model.h"
#include "host/render/text_layout.h"

namespace npar_host {

/// The part of a text report about the fields that its tests used.
void WriteFields(TextPage& page, const ResultDocument& document, std::size_t indent);

}  // namespace npar_host
