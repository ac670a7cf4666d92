#include "fuzz/component_run.h"

#include <npar/component.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "frame/component_builder.h"
#include "host/render/renderers.h"
#include "host/render/result_model.h"

void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "broken promise: %s\n", what);
  std::abort();
}

namespace {

using Query = std::uint32_t (*)(void*, char*, std::size_t, std::size_t*, std::int32_t*);

std::string Ask(Query query, void* component) {
  std::int32_t err = 0;
  std::size_t needed = 0;
  if (query(component, nullptr, 0, &needed, &err) != NPAR_BUFFER_TOO_SMALL) return {};
  std::string text(needed, '\0');
  Require(query(component, text.data(), needed, &needed, &err) == HB_OK,
          "a buffer as large as asked");
  text.resize(needed - 1);
  return text;
}

void CheckResult(const std::string& published) {
  const npar_host::ResultDocument document =
      npar_host::ReadResultDocument(published, "the published result");
  for (const npar_host::Renderer& renderer : npar_host::AllRenderers()) {
    Require(!Rendered(renderer, document).empty(), "a report of every result");
  }
}

}  // namespace

void RunComponent(RecordingHost& host) {
  Require(hb_initialise(host.Host()) == HB_OK, "a host is taken");
  std::int32_t err = 0;
  void* component = nullptr;
  Require(hb_create_component(host.Context(), nullptr, &component, &err) == HB_OK, "a component");
  std::uint32_t result = hb_component_configure(component, &err);
  if (result == HB_OK) {
    Require(!Ask(hb_component_getExecutionRequirements, component).empty(), "requirements");
    result = hb_component_beginExecution(component, host.Progress(), &err);
    Require(host.Published().empty() == (result != HB_OK), "a result exactly for a success");
    if (result == HB_OK) CheckResult(host.Published());
  }
  const std::string messages = Ask(hb_component_getMessages, component);
  Require(result == HB_OK || messages.find("type=\"error\"") != std::string::npos,
          "a message for every failure");
  Require(hb_component_endExecution(component, &err) == HB_OK, "a run ends");
  Require(host.OpenDocuments() == 0, "documents are given back");
  // hb_destroy_component leaves behind what the component owns; here that would be no finding.
  delete static_cast<NPARComponentBuilder*>(component);
}
