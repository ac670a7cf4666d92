#pragma once

#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#include "foundation/names.h"

/// Settings by keys and values in turn; numbers and flags are put as doubles, as the planner does:
///   TestSettings().Put("sigLevel", 0.05, "variableIndex", Indices{0, 1})
class TestSettings {
 public:
  using Indices = std::vector<std::int32_t>;

  template <typename Value, typename... Rest>
  TestSettings& Put(const std::string& key, const Value& value, const Rest&... rest) {
    if constexpr (std::is_arithmetic_v<Value>) {
      settings.AddNewSetting(key, static_cast<double>(value), std::string());
    } else if constexpr (std::is_same_v<Value, TestSettings>) {
      settings.AddNewSetting(key, value.Get(), std::string());
    } else {
      settings.AddNewSetting(key, value, std::string());
    }
    return Put(rest...);
  }
  TestSettings& Put() { return *this; }
  [[nodiscard]] const QDSettings& Get() const { return settings; }
  operator const QDSettings&() const { return settings; }  // NOLINT: they are settings

 private:
  QDSettings settings;
};

/// The same as an expression: Entry("variableName", "x", "testProbability", 0.3).
template <typename... KeysAndValues>
[[nodiscard]] TestSettings Entry(const KeysAndValues&... keysAndValues) {
  return TestSettings().Put(keysAndValues...);
}
