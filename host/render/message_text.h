#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace npar_host {

/// The text of a message code with its parameters filled in.
[[nodiscard]] std::string MessageText(std::int32_t code,
                                      const std::vector<std::string>& parameters);

}  // namespace npar_host
