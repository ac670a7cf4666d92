#include <cmath>
#include <string>
#include <vector>

#include "foundation/setting_values.h"
#include "fuzz/component_run.h"

namespace {

/// Readings of one value agree with each other.
void CheckReadings(const QDXML_700::IQDSettingValue& value) {
  bool flag = false;
  std::int32_t whole = 7;
  double number = 7.0;
  std::string text;
  const bool isFlag = value.Get(flag);
  const bool isWhole = value.Get(whole);
  const bool isNumber = value.Get(number);
  const bool isText = value.Get(text);
  Require(isWhole || whole == 7, "an unread value is left alone");
  Require(isNumber || number == 7.0, "an unread value is left alone");
  Require(!isText || !isWhole || isNumber, "a text that spells an int spells a double");
  Require(!isText || !isWhole || number == whole, "and the same");
  Require(!isText || !isFlag || text == "true" || text == "false", "a flag is spelled");
  std::vector<std::int32_t> wholes;
  std::vector<double> numbers;
  std::vector<std::string> texts;
  const bool areWhole = value.Get(wholes);
  const bool areNumbers = value.Get(numbers);
  Require(!areWhole || areNumbers, "a list of ints is one of doubles");
  Require(!areWhole || wholes.size() == numbers.size(), "of the same length");
  if (value.Get(texts) && areNumbers) Require(texts.size() == numbers.size(), "item by item");
}

}  // namespace

/// Any text as the value of a setting, alone and in lists: lines are the items.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  std::vector<std::string> lines(1);
  for (const char c : text) {
    if (c == '\n') lines.emplace_back();
    if (c != '\n') lines.back() += c;
  }
  CheckReadings(QDXML_700::QDScalarValue<std::string>(text));
  CheckReadings(QDXML_700::QDVecValue<std::string>(lines));
  double number = 0.0;
  QDXML_700::QDScalarValue<std::string> first(lines.front());
  if (first.Get(number)) CheckReadings(QDXML_700::QDScalarValue<double>(number));
  return 0;
}
