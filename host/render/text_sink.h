#pragma once

#include <functional>
#include <string_view>

namespace npar_host {

/// Takes a text piece by piece, in order.
using TextSink = std::function<void(std::string_view piece)>;

}  // namespace npar_host
