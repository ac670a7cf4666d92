#include "fuzz/component_run.h"
#include "support/all_tests_host.h"

/// Any text as the parameter document of a run on usual data.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  AllTestsHost host(25);
  host.parameters.assign(reinterpret_cast<const char*>(data), size);
  RunComponent(host);
  return 0;
}
