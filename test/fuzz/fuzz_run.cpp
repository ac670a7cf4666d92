#include <cmath>
#include <iterator>
#include <limits>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "catalogue/catalogue.h"
#include "fuzz/component_run.h"

// A run that the bytes choose: fields of every kind, weights, missing and odd values, tests with
// settings of right and wrong types.
namespace {

/// Takes decisions from the bytes; zeros when they are used up.
class Choices {
 public:
  Choices(const std::uint8_t* data, std::size_t size) : rest(data, size) {}
  std::size_t Below(std::size_t count) { return count == 0 ? 0 : Byte() % count; }
  bool Flip() { return (Byte() & 1U) != 0; }
  std::uint8_t Byte() {
    if (rest.empty()) return 0;
    const std::uint8_t first = rest.front();
    rest = rest.subspan(1);
    return first;
  }
  const auto& OneOf(const auto& values) { return values[Below(std::size(values))]; }

 private:
  std::span<const std::uint8_t> rest;
};

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kOddNumbers[] = {0.0,    -0.0,      1e-308,     5e-324, 1e308, -1e308, 0x1p31 - 1,
                                  0x1p31, kInfinity, -kInfinity, kNan,   0.1,   0x1p53};

const std::vector<std::string> kTexts = [] {
  std::istringstream words(
      "true false 0 1 -1 0.5 1e999 nan c0 c1 c2 c3 2 3 abc 95 -0.05 1e-9 100 pairWise stepWise "
      "none givenCategoryList getFromData givenExpectedValue givenCutPoint sampleMidPoint "
      "cutPointMedian cutPointMean cutPointValue orderSmallestToLargest orderLargestToSmallest "
      "analysis listwise");
  std::vector<std::string> texts{std::istream_iterator<std::string>(words), {}};
  texts.insert(texts.begin() + 8, "");  // where the seeds expect it
  return texts;
}();

struct FieldPlan {
  std::string name;
  std::size_t categories;  // 0: continuous
};

std::string FieldElement(const FieldPlan& field, Choices& choices, const char* role) {
  std::string text = "<Field name='" + field.name + "' measure='";
  if (field.categories == 0) {
    text += choices.Below(10) == 9 ? "other'" : "continuous'";
    return text + role + "/>";
  }
  const bool isNumeric = choices.Flip();
  text += choices.Flip() ? "ordinal'" : "nominal'";
  text += isNumeric ? " storage='real'>" : " storage='string'>";
  for (std::size_t i = 0; i < field.categories; ++i) {
    text += "<Value value='" + std::string(isNumeric ? "" : "c") + std::to_string(i) + "'/>";
  }
  return text + "</Field>";
}

double Value(const FieldPlan& field, Choices& choices) {
  const std::uint8_t choice = choices.Byte();
  if (choice == 255) return choices.OneOf(kOddNumbers);
  if (field.categories == 0) return choice == 254 ? HB_MISSING_VALUE : (choice - 100) * 0.25;
  return choice == 254 ? -1.0 : static_cast<double>(choice % (field.categories + choice / 250));
}

std::string List(Choices& choices, std::span<const FieldPlan> fields) {
  std::string text = "<ListValue>";
  for (const FieldPlan& field : fields) {
    if (choices.Flip()) text += "<Value value='" + field.name + "'/>";
  }
  return text + "</ListValue>";
}

std::string SettingValue(Choices& choices) {
  const auto scalar = [&] { return " value='" + choices.OneOf(kTexts) + "'"; };
  switch (choices.Below(4)) {
    case 0: {
      std::string text = "><ListValue>";
      for (std::size_t i = choices.Below(4); i > 0; --i) text += "<Value" + scalar() + "/>";
      return text + "</ListValue></Attribute>";
    }
    case 1:
      return "><ListValue><StructuredValue><Attribute name='categoryValue'" + scalar() +
             "/><Attribute name='expectedValue'" + scalar() +
             "/></StructuredValue></ListValue></Attribute>";
    default:
      return scalar() + "/>";
  }
}

std::string TestParameters(Choices& choices, char family) {
  std::string text;
  for (const catalogue::Card* test : catalogue::kCards) {
    if (KeyLetter(test->family) != family || !test->askedBy.empty() || !choices.Flip()) continue;
    text += "<Parameter name='" + test->key +
            "'><StructuredValue><Attribute name='isSelected' value='true'/>";
    for (const catalogue::Settings& settings :
         {test->settings, test->categoricalSettings, test->continuousSettings,
          catalogue::confidence_interval::kCard.settings}) {
      for (const catalogue::Setting* setting : settings) {
        if (!choices.Flip()) continue;
        text += "<Attribute name='" + setting->key + "'" + SettingValue(choices);
      }
    }
    text += "</StructuredValue></Parameter>";
  }
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Choices choices(data, size);
  RecordingHost host;
  std::vector<FieldPlan> fields;
  for (std::size_t i = 1 + choices.Below(6); i > 0; --i) {
    fields.push_back({"f" + std::to_string(fields.size()), choices.Below(5)});
    host.fields += FieldElement(fields.back(), choices, "");
  }
  const std::vector<FieldPlan> inputs = fields;
  if (choices.Flip()) {
    fields.push_back({"w", 0});
    host.fields += "<Field name='w' measure='continuous' role='frequencyWeight'/>";
  }
  if (choices.Below(4) == 0) host.iteratorTable.readBlock = nullptr;

  host.parameters = "<Parameters>";
  for (const char* key : {"missingTreatment", "sigLevel", "confidenceLevel", "caseIDField"}) {
    if (choices.Below(3) != 0) continue;
    host.parameters +=
        "<Parameter name='" + std::string(key) + "' value='" + choices.OneOf(kTexts) + "'/>";
  }
  for (const char* key : {"oneSampleVariables", "relatedVariables", "independentVariables"}) {
    host.parameters +=
        "<Parameter name='" + std::string(key) + "'>" + List(choices, inputs) + "</Parameter>";
  }
  host.parameters += "<Parameter name='groupVariable'><ListValue><Value value='" +
                     inputs[choices.Below(inputs.size())].name + "'/></ListValue></Parameter>";
  for (const auto& [family, flag] : {std::pair{'O', "isAutomaticallyOneSample"},
                                     {'R', "isAutomaticallyRelated"},
                                     {'I', "isAutomaticallyIndependent"}}) {
    const bool isAutomatic = choices.Below(4) == 0;
    host.parameters += "<Parameter name='" + std::string(flag) + "' value='" +
                       (isAutomatic ? "true" : "false") + "'/>";
    host.parameters += TestParameters(choices, family);
  }
  host.parameters += "</Parameters>";

  for (std::size_t i = choices.Below(80); i > 0; --i) {
    host.records.emplace_back();
    for (const FieldPlan& field : fields) host.records.back().push_back(Value(field, choices));
    if (fields.back().name == "w") host.records.back().back() = choices.Byte() % 9;
  }
  RunComponent(host);
  return 0;
}
