#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace npar_host {

/// The words as a person lists them: "a, b or c".
[[nodiscard]] std::string JoinWords(const std::vector<std::string>& words,
                                    std::string_view lastJoint = " or ",
                                    std::string_view joint = ", ");

}  // namespace npar_host
