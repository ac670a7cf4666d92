#include "tests/one_sample/two_class_test.h"

#include "catalogue/cards/binomial.h"
#include "kit/statistics/proportion_interval.h"
#include "report/elements.h"

namespace card = catalogue::binomial;

namespace {

std::string CodeText(const std::vector<double>& categories) {
  return categories.empty() ? kMissingText : NumberText(categories.front());
}

}  // namespace

void TwoClassTest::Prepare(const SettingsReader& settings) {
  classes.ReadFormation(settings);
  if (HasFailed()) return;
  Require({classes.GetVariable()});
  switch (classes.Prepare(settings, sharedData)) {
    case TwoClasses::Obstacle::None:
      break;
    case TwoClasses::Obstacle::NoFrequencies:
      Fail(card::kNoSummaries);
      break;
    case TwoClasses::Obstacle::TooManyCategories:
      Fail(card::kTooManyCategories);
      break;
    case TwoClasses::Obstacle::NoCategories:
      Fail(card::kNoCategories);
      break;
  }
}

Condition TwoClassTest::ClassCondition(const TwoClassKeys& keys,
                                       const std::vector<std::string>& further) const {
  Condition condition{std::string(keys.fromData), {IntegerText(classes.GetVariable())}};
  std::vector<std::string>& parameters = condition.parameters;
  switch (classes.GetFormation()) {
    case TwoClasses::Formation::GivenCategories:
      condition.key = keys.givenList;
      parameters.push_back(JoinNumbers(classes.FirstCategories()));
      parameters.push_back(JoinNumbers(classes.SecondCategories()));
      break;
    case TwoClasses::Formation::CutPoint:
      condition.key = keys.cutPoint;
      parameters.push_back(NumberOrMissingText(classes.CutPoint()));
      break;
    case TwoClasses::Formation::FromData:
      parameters.push_back(CodeText(classes.FirstCategories()));
      parameters.push_back(CodeText(classes.SecondCategories()));
      break;
  }
  parameters.insert(parameters.end(), further.begin(), further.end());
  return condition;
}

void TwoClassTest::AddClasses(ExtendedFigures& figures) const {
  figures.Add("FirstClassN", classes.FirstCount());
  figures.Add("SecondClassN", classes.SecondCount());
  figures.Add("FirstClassShare", classes.FirstShare());
}

void TwoClassTest::AddShareIntervals(ExtendedFigures& figures) const {
  const ProportionInterval wilson =
      WilsonInterval(classes.FirstCount(), classes.Total(), confidenceLevel);
  figures.Add("WilsonLower", wilson.lower);
  figures.Add("WilsonUpper", wilson.upper);
  const ProportionInterval agrestiCoull =
      AgrestiCoullInterval(classes.FirstCount(), classes.Total(), confidenceLevel);
  figures.Add("AgrestiCoullLower", agrestiCoull.lower);
  figures.Add("AgrestiCoullUpper", agrestiCoull.upper);
}
