#pragma once

#include <span>
#include <string>
#include <string_view>

#include "host/render/result_model.h"
#include "host/render/text.h"
#include "host/render/text_sink.h"

namespace npar_host {

/// One form that a result document can be shown in.
struct Renderer {
  const char* name;  // as typed after --as and --report
  /// The style is for forms that are read in a terminal.
  void (*render)(const ResultDocument& document, const TextStyle& style, const TextSink& sink);
};

[[nodiscard]] std::span<const Renderer> AllRenderers();
/// The renderer of that name, or null.
[[nodiscard]] const Renderer* FindRenderer(std::string_view name);

/// The whole of a report that is small enough.
[[nodiscard]] std::string Rendered(const Renderer& renderer, const ResultDocument& document,
                                   const TextStyle& style = {});

}  // namespace npar_host
