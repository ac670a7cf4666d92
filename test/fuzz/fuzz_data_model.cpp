#include <string>

#include "fuzz/component_run.h"
#include "host/data/input_error.h"
#include "host/data/model.h"
#include "support/all_tests_host.h"

/// Any text as the data model of a run of every test, and as the one that a person writes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  AllTestsHost host(25);
  host.modelText.assign(reinterpret_cast<const char*>(data), size);
  // A model of more fields than the records have would be the host's own mistake.
  for (std::vector<double>& record : host.records) record.resize(size / 8 + kAllTestsWidth, 1.0);
  RunComponent(host);
  try {
    static_cast<void>(npar_host::ParseModel(host.modelText, "model.xml"));
  } catch (const npar_host::InputError&) {
    // refused with its place, as it should be
  }
  return 0;
}
