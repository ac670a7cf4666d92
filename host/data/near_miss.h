#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace npar_host {

/// "; did you mean "x"?" for the name that is closest to an unknown one, empty where none is close:
/// names that differ in case only, or by at most two characters put in, left out, exchanged or
/// swapped with their neighbour.
[[nodiscard]] std::string NearMiss(std::string_view unknown, const std::vector<std::string>& names);

}  // namespace npar_host
