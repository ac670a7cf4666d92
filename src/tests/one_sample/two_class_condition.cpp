#include "tests/one_sample/two_class_condition.h"

namespace {

std::string CodeText(const std::vector<double>& categories) {
  return categories.empty() ? kMissingText : NumberText(categories.front());
}

}  // namespace

void AddTwoClassCondition(XMLElement& algorithm, const TwoClasses& classes,
                          const TwoClassKeys& keys, const std::vector<std::string>& further) {
  std::vector<std::string> parameters{IntegerText(classes.GetVariable())};
  std::string_view key = keys.fromData;
  switch (classes.GetFormation()) {
    case TwoClasses::Formation::GivenCategories:
      key = keys.givenList;
      parameters.push_back(JoinNumbers(classes.FirstCategories()));
      parameters.push_back(JoinNumbers(classes.SecondCategories()));
      break;
    case TwoClasses::Formation::CutPoint:
      key = keys.cutPoint;
      parameters.push_back(NumberOrMissingText(classes.CutPoint()));
      break;
    case TwoClasses::Formation::FromData:
      parameters.push_back(CodeText(classes.FirstCategories()));
      parameters.push_back(CodeText(classes.SecondCategories()));
      break;
  }
  parameters.insert(parameters.end(), further.begin(), further.end());
  AddCondition(algorithm, key, parameters);
  AddUnknownValues(algorithm, classes.UnknownTexts());
}
