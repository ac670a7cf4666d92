#include "catalogue/cards/runs.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "catalogue/settings.h"
#include "kit/contract/test.h"
#include "kit/groups/category_selection.h"
#include "kit/statistics/normal.h"
#include "kit/statistics/runs.h"
#include "planning/test_construction.h"
#include "report/algorithm_element.h"
#include "report/elements.h"

namespace card = catalogue::runs;

namespace keys = catalogue::settings;

namespace {

void ReadCutPoint(TestConstruction& construction, const std::string& name, std::int32_t index,
                  const std::string& formation) {
  construction.Put("dataCutPoint", formation);
  if (formation == "cutPointMedian") {
    construction.Planner().RegisterStatistic(index, Statistic::Median);
  } else if (formation == "cutPointMean") {
    construction.Planner().RegisterStatistic(index, Statistic::Mean);
  } else if (formation == "cutPointValue") {
    double value = 0.0;
    if (construction.Read(card::kCutPointValue.key, value)) {
      construction.Put("givenCutPoint", value);
    } else {
      construction.Fail(card::kNoCutPoint, name);
    }
  } else {
    construction.Fail(card::kBadEntry, name);
  }
}

void ReadCategories(TestConstruction& construction, const IQDVariable& variable,
                    const std::string& formation) {
  const QDCategoryList& categories = *variable.GetCategories();
  const std::string& name = variable.GetName();
  construction.Put("classFormation", formation);
  if (formation == "getFromData") {
    if (categories.Size() != 2) construction.Fail(card::kNotTwoGroups, name);
    return;
  }
  std::vector<std::string> texts;
  if (formation != "givenCategoryList") {
    construction.Fail(card::kBadEntry, name);
    return;
  }
  construction.Read(keys::kGivenCategories.key, texts);
  const CategorySelection selection = SelectCategories(variable, texts);
  const std::vector<double> group1 = selection.KnownCodes();
  if (group1.empty() || selection.otherCodes.empty()) {
    construction.Fail(card::kBadCategoryList, name);
    return;
  }
  construction.Put("originalGroup1List", texts);
  construction.Put("originalGroup2List", selection.otherTexts);
  construction.Put("givenCategoryList", group1);
  construction.Put("group2List", selection.otherCodes);
  construction.Put("GivenCategoryListInvalid", selection.unknownTexts);
}

void ReadEntry(TestConstruction& construction) {
  NPARPlanner& planner = construction.Planner();
  const std::int32_t index =
      construction.LookUpVariable("variableName", card::kBadEntry, card::kUnknownVariable);
  if (index < 0) return;
  const std::string& name = planner.GetVariables().GetVarAt(index)->GetName();
  const VariableKind kind = construction.KindOf(index);
  construction.Put("variableIndex", index);
  construction.Put("measureLevel", static_cast<double>(kind));
  if (kind == VariableKind::Continuous) planner.RegisterSortedVariable(index);
  if (TestConstruction::IsCategorical(kind)) {
    planner.RegisterStatistic(index, Statistic::Frequencies);
  }
  std::string formation;
  if (!construction.Read(keys::kCategoryClasses.key, formation) &&
      !construction.Read(card::kFormation.key, formation)) {
    construction.Fail(card::kBadEntry, name);
    return;
  }
  if (kind == VariableKind::Continuous) {
    ReadCutPoint(construction, name, index, formation);
  } else if (TestConstruction::IsCategorical(kind)) {
    ReadCategories(construction, *planner.GetVariables().GetVarAt(index), formation);
  } else {
    construction.Fail(card::kBadEntry, name);
  }
}

/// One-sample runs test: is the sequence of a field's values, split into two groups, random?
///
/// Formulas, limits, sources: docs/statistics/runs.md.
///
/// One pass in the order of the records; a record is one step of one run, whatever its weight.
class NPARRuns final : public NPARTest {
 public:
  using NPARTest::NPARTest;

  XMLElement* WriteResults() override {
    return WriteAlgorithm(
        *this,
        {.card = card::kCard,
         .decidingSig = figures.sig,
         .condition = GetCondition(),
         .unknownTexts = invalidCategories},
        [this](XMLElement& algorithm) {
          AddFigures(
              algorithm, "RunsParameters",
              {{"Mean", mean}, {"StdDev", figures.standardError}, {"ObservedRunNumber", runCount}});
          AddNormalStatistics(
              algorithm, {{"TotalN", countAtOrAbove + countBelow}, {"TestStatistic", runCount}},
              figures);
        });
  }

 protected:
  /// Error 220110: no cut point.
  void Prepare(const SettingsReader& settings) override {
    variableIndex = settings.Index("variableIndex");
    Require({variableIndex});
    isContinuous =
        settings.Index("measureLevel") == static_cast<std::int32_t>(VariableKind::Continuous);
    const std::string word = settings.Text("dataCutPoint");
    if (isContinuous) {
      isCutOfData = sharedData != nullptr && (word == "cutPointMedian" || word == "cutPointMean");
      if (isCutOfData) {
        if (sharedData->GetTotalWeight(variableIndex) > 0) {
          cutPoint = word == "cutPointMedian" ? sharedData->GetMedian(variableIndex)
                                              : sharedData->GetMean(variableIndex);
        }
      } else if (!settings.Find("givenCutPoint", cutPoint)) {
        Fail(card::kNoCutPoint);
      }
    } else if (word.empty()) {
      group1Values = settings.List<double>("givenCategoryList");
    } else if (word == "mode" && sharedData != nullptr) {
      cutPoint = static_cast<double>(sharedData->GetLargestFrequency(variableIndex));
    }
    group2Values = settings.List<double>("group2List");
    invalidCategories = settings.List<std::string>("GivenCategoryListInvalid");
  }

  void Take(RecordBatch& batch) override {
    if (isContinuous) {
      CountRuns(batch, batch.Of(variableIndex), [cut = cutPoint](double x) { return x < cut; });
      return;
    }
    const std::int32_t* codes = batch.TruncatedOf(variableIndex);
    if (cutPoint == QDMV::gMissingValue) FindGroups(codes, batch.Size());
    CountRuns(batch, codes, [this](std::int32_t code) {
      return std::find(group1Values.begin(), group1Values.end(), code) != group1Values.end();
    });
  }

  /// Error 220112: a group is empty.
  void Compute() override {
    if (countAtOrAbove < 1 || countBelow < 1) {
      Fail(card::kEmptyGroup);
      return;
    }
    const RunsApproximation approximation(static_cast<double>(countAtOrAbove),
                                          static_cast<double>(countBelow));
    mean = approximation.mean;
    figures = approximation.FiguresOf(runCount);
  }

  void Extend(ExtendedFigures& extended) override {
    extended.Add("FirstGroupN", countBelow);
    extended.Add("SecondGroupN", countAtOrAbove);
    if (figures.standardError > 0.0) {
      const double z = (static_cast<double>(runCount) - mean) / figures.standardError;
      extended.Add("UncorrectedStandardTestStatistic", z);
      extended.Add("UncorrectedAsymptoticSig2Tailed", TwoSidedNormalSig(z));
    }
    if (const auto exact = ExactRunsTails(countBelow, countAtOrAbove, runCount)) {
      extended.Add("ExactSig1TailedLess", exact->less);
      extended.Add("ExactSig1TailedGreater", exact->greater);
      extended.Add("ExactSig2Tailed", exact->twoSided);
    }
  }

 private:
  enum class Group { None, AtOrAbove, Below };

  /// The groups of the data: the first value is the first group, the first other one the second.
  void FindGroups(const std::int32_t* codes, std::size_t count) {
    if (count == 0) return;
    if (group1Values.empty()) group1Values.push_back(codes[0]);
    if (!group2Values.empty()) return;
    const double first = group1Values.front();
    const std::int32_t* other =
        std::find_if(codes, codes + count, [&](std::int32_t code) { return code != first; });
    if (other != codes + count) group2Values.push_back(*other);
  }

  template <typename Value, typename IsBelow>
  void CountRuns(RecordBatch& batch, const Value* values, IsBelow isBelow) {
    weight.UseTruncated(batch, [&](auto weightAt) {
      for (std::size_t i = 0; i < batch.Size(); ++i) {
        const Group group = isBelow(values[i]) ? Group::Below : Group::AtOrAbove;
        (group == Group::Below ? countBelow : countAtOrAbove) += weightAt(i);
        if (group != lastGroup) ++runCount;
        lastGroup = group;
      }
    });
  }

  [[nodiscard]] Condition GetCondition() const {
    const std::string index = IntegerText(variableIndex);
    if (cutPoint != QDMV::gMissingValue || isCutOfData) {
      return {"ACutPointIsSpecified_O_Runs_2", {index, NumberOrMissingText(cutPoint)}};
    }
    std::vector<double> group1 = group1Values;
    group1.insert(group1.end(), invalidCategories.size(), -1.0);
    return {group1Values.empty() ? "ABinaryTestVariableIsSpecified_O_Runs_3"
                                 : "CategoryListsAreSpecified_O_Runs_3",
            {index, JoinNumbers(group1), JoinNumbers(group2Values)}};
  }

  std::int32_t variableIndex = -1;
  bool isContinuous = false;
  double cutPoint = QDMV::gMissingValue;
  bool isCutOfData = false;  // which may have no value
  std::vector<double> group1Values;
  std::vector<double> group2Values;
  std::vector<std::string> invalidCategories;
  Group lastGroup = Group::None;
  std::int64_t runCount = 0;
  std::int64_t countAtOrAbove = 0;
  std::int64_t countBelow = 0;
  double mean = QDMV::gMissingValue;
  NormalFigures figures;
};

}  // namespace

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  ReadEntry(construction);
  return construction.Make<NPARRuns>();
}
