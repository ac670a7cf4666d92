#pragma once

#include <string>

#include "catalogue/card.h"

namespace npar_host {

/// What a program needs that writes functions for tests: {"tests": [...]} with options, keys,
/// ranges and message codes, of `only` one test or, where that is null, of all.
[[nodiscard]] std::string CatalogueJson(const catalogue::Card* only);

}  // namespace npar_host
