#include "tests/related/success_values.h"

#include <string>
#include <vector>

#include "planning/numeric_values.h"

namespace {

template <typename Value>
void PutList(TestConstruction& construction, const char* to, const std::vector<Value>& values,
             std::int32_t noValueCode) {
  if (values.empty()) {
    construction.Fail(noValueCode);
  } else {
    construction.Put(to, values);
  }
}

}  // namespace

void PutSuccessValues(TestConstruction& construction, const char* key, const IQDVariable& variable,
                      std::int32_t noValueCode) {
  if (variable.GetType() == VariableKind::NumericCategory) {
    PutList(construction, "successCategoryListNum", ReadNumericValues(construction, key, variable),
            noValueCode);
    return;
  }
  std::vector<std::string> texts;
  static_cast<void>(construction.Read(key, texts));
  PutList(construction, "successCategoryListStr", texts, noValueCode);
}
