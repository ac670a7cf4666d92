#include "planning/numeric_values.h"

#include <string>

std::vector<double> ReadNumericValues(const TestConstruction& construction, std::string_view key,
                                      const IQDVariable& variable) {
  std::vector<double> values;
  std::vector<std::string> texts;
  if (construction.Read(key, values) || !construction.Read(key, texts)) return values;
  for (const std::string& text : texts) {
    double value = 0.0;
    if (!variable.TextToNumber(text, value)) return {};
    values.push_back(value);
  }
  return values;
}
