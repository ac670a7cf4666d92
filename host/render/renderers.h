#pragma once

#include <span>
#include <string>
#include <string_view>

#include "host/render/result_model.h"
#include "host/render/text.h"

namespace npar_host {

/// One form that a result document can be shown in.
struct Renderer {
  const char* name;  // as typed after --as and --report
  /// The style is for forms that are read in a terminal.
  std::string (*render)(const ResultDocument& document, const TextStyle& style);
};

[[nodiscard]] std::span<const Renderer> AllRenderers();
/// The renderer of that name, or null.
[[nodiscard]] const Renderer* FindRenderer(std::string_view name);

}  // namespace npar_host
