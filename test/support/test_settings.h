#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "foundation/names.h"

/// Settings, one call for each entry; numbers and flags are put as doubles, as the planner does:
///   TestSettings().Put("sigLevel", 0.05).Put("variableIndex", Indices{0, 1})
class TestSettings {
 public:
  using Indices = std::vector<std::int32_t>;

  template <typename Value>
  TestSettings& Put(const std::string& key, const Value& value) {
    if constexpr (std::is_arithmetic_v<Value>) {
      settings->AddNewSetting(key, static_cast<double>(value), std::string());
    } else {
      settings->AddNewSetting(key, value, std::string());
    }
    return *this;
  }
  [[nodiscard]] const QDSettings& Get() const { return *settings; }
  /// For the constructor of a test, which takes its settings over.
  [[nodiscard]] QDSettings* Release() { return settings.release(); }

 private:
  std::unique_ptr<QDSettings> settings = std::make_unique<QDSettings>();
};

/// Settings of a test on several related variables; a weight index below 0: unweighted.
[[nodiscard]] inline QDSettings* RelatedSettings(const TestSettings::Indices& variables,
                                                 std::int32_t weightIndex = -1,
                                                 double sigLevel = 0.05) {
  TestSettings settings;
  settings.Put("sigLevel", sigLevel);
  if (weightIndex >= 0) settings.Put("weightVariableIndex", weightIndex);
  return settings.Put("variableIndex", variables).Release();
}

/// Settings of a test on a pair of variables.
[[nodiscard]] inline QDSettings* PairSettings(std::int32_t first, std::int32_t second,
                                              std::int32_t weightIndex = -1,
                                              double sigLevel = 0.05) {
  return RelatedSettings({first, second}, weightIndex, sigLevel);
}
