#include "foundation/display.h"

#ifdef QD_DIAGNOSTICS
#include <cinttypes>
#include <cstdio>
#endif

namespace QDDisplay_700 {

#ifdef QD_DIAGNOSTICS

void DisplayText(std::int32_t code, const std::string& text) {
  std::fprintf(stderr, "%" PRId32 ": %s\n", code, text.c_str());
}
void DisplayS(const std::string& name, const std::string& value) {
  std::fprintf(stderr, "%s = %s\n", name.c_str(), value.c_str());
}
void DisplayI(const std::string& name, std::int64_t value) {
  std::fprintf(stderr, "%s = %" PRId64 "\n", name.c_str(), value);
}

#else

void DisplayText(std::int32_t, const std::string&) {}
void DisplayS(const std::string&, const std::string&) {}
void DisplayI(const std::string&, std::int64_t) {}

#endif

}  // namespace QDDisplay_700
