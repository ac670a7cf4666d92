#include "host/render/renderers.h"

#include "host/render/csv.h"
#include "host/render/html.h"
#include "host/render/json.h"
#include "host/render/manuscript.h"

namespace npar_host {
namespace {

constexpr Renderer kRenderers[] = {
    {"text", [](const ResultDocument& document, const TextStyle& style,
                const TextSink& sink) { sink(RenderText(document, style)); }},
    {"html", [](const ResultDocument& document, const TextStyle&,
                const TextSink& sink) { sink(RenderHtml(document)); }},
    {"json", [](const ResultDocument& document, const TextStyle&,
                const TextSink& sink) { RenderJson(document, sink); }},
    {"markdown", [](const ResultDocument& document, const TextStyle&,
                    const TextSink& sink) { sink(RenderMarkdown(document)); }},
    {"latex", [](const ResultDocument& document, const TextStyle&,
                 const TextSink& sink) { sink(RenderLatex(document)); }},
    {"csv", [](const ResultDocument& document, const TextStyle&,
               const TextSink& sink) { sink(RenderCsv(document)); }},
};

}  // namespace

std::span<const Renderer> AllRenderers() { return kRenderers; }

const Renderer* FindRenderer(std::string_view name) {
  for (const Renderer& renderer : kRenderers) {
    if (renderer.name == name) return &renderer;
  }
  return nullptr;
}

std::string Rendered(const Renderer& renderer, const ResultDocument& document,
                     const TextStyle& style) {
  std::string text;
  renderer.render(document, style, [&text](std::string_view piece) { text += piece; });
  return text;
}

}  // namespace npar_host
