// Another provider of the functions that can refuse: loaded before the platform (LD_PRELOAD), each
// answers with the code that the environment names, and leaves its flag alone where none is named.

#include <cstdlib>
#include <string>

#include "foundation/math.h"

namespace {

/// -1: none is named.
int ToldCode() {
  const char* text = std::getenv("NPAR_TEST_FAILURE");
  return text == nullptr ? -1 : std::stoi(text);
}

}  // namespace

namespace QDMath_700 {

double QDDistFun::CdfBin(double /*x*/, double /*n*/, double /*p*/, std::int32_t& error) {
  if (const int code = ToldCode(); code >= 0) error = code;
  return 0.25;
}

PowerStatus QDPower::Exponent(double /*x*/, double& value) {
  value = 0.25;
  return static_cast<PowerStatus>(ToldCode());
}

}  // namespace QDMath_700
