#include "host/render/renderers.h"

#include "host/render/html.h"
#include "host/render/json.h"

namespace npar_host {
namespace {

constexpr Renderer kRenderers[] = {
    {"text", RenderText},
    {"html", [](const ResultDocument& document, const TextStyle&) { return RenderHtml(document); }},
    {"json", [](const ResultDocument& document, const TextStyle&) { return RenderJson(document); }},
};

}  // namespace

std::span<const Renderer> AllRenderers() { return kRenderers; }

const Renderer* FindRenderer(std::string_view name) {
  for (const Renderer& renderer : kRenderers) {
    if (renderer.name == name) return &renderer;
  }
  return nullptr;
}

}  // namespace npar_host
