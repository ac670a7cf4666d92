#include <string>

#include "fuzz/component_run.h"
#include "host/data/input_error.h"
#include "host/render/renderers.h"
#include "host/render/result_model.h"

/// Any text as a result document: refused, or rendered in every form.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const npar_host::ResultDocument document = npar_host::ReadResultDocument(
        std::string(reinterpret_cast<const char*>(data), size), "result.xml");
    for (const npar_host::Renderer& renderer : npar_host::AllRenderers()) {
      Require(!Rendered(renderer, document).empty(), "a report of every document");
    }
  } catch (const npar_host::InputError&) {
    // refused with its place, as it should be
  }
  return 0;
}
