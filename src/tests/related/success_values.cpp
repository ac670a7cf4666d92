#include "tests/related/success_values.h"

#include <string>
#include <vector>

namespace {

template <typename Value>
void PutList(TestConstruction& construction, const char* from, const char* to,
             std::int32_t noValueCode) {
  std::vector<Value> values;
  static_cast<void>(construction.Read(from, values));
  if (values.empty()) {
    construction.Fail(noValueCode);
  } else {
    construction.Put(to, values);
  }
}

}  // namespace

void PutSuccessValues(TestConstruction& construction, const char* key, VariableKind kind,
                      std::int32_t noValueCode) {
  if (kind == VariableKind::NumericCategory) {
    PutList<double>(construction, key, "successCategoryListNum", noValueCode);
  } else {
    PutList<std::string>(construction, key, "successCategoryListStr", noValueCode);
  }
}
