#include "kit/groups/two_classes.h"

#include <numeric>
#include <utility>

void TwoClasses::ReadFormation(const SettingsReader& settings) {
  const std::string word = settings.Text("classFormation");
  formation = word == "givenCategoryList" ? Formation::GivenCategories
              : word == "givenCutPoint"   ? Formation::CutPoint
                                          : Formation::FromData;
  variableIndex = settings.Index("variableIndex");
  isContinuous =
      settings.Index("measureLevel") == static_cast<std::int32_t>(VariableKind::Continuous);
}

TwoClasses::Obstacle TwoClasses::Prepare(const SettingsReader& settings,
                                         const UnivariateResults* sharedData) {
  if (isContinuous) {
    settings.Find("givenCutPoint", cutPoint);
    if (cutPoint == QDMV::gMissingValue && sharedData != nullptr &&
        sharedData->GetMinimum(variableIndex) != QDMV::gMissingValue) {
      cutPoint = std::midpoint(sharedData->GetMinimum(variableIndex),
                               sharedData->GetMaximum(variableIndex));
    }
    return Obstacle::None;
  }
  std::map<std::int32_t, std::int64_t> frequencies;
  if (sharedData == nullptr || !sharedData->GetFrequencies(variableIndex, frequencies)) {
    return Obstacle::NoFrequencies;
  }
  if (formation != Formation::GivenCategories) return TakeCategoriesOfData(frequencies);
  firstCategories = settings.List<double>("givenCategoryList");
  givenTexts = settings.List<std::string>("originalGivenCategoryList");
  secondCategories = settings.List<double>("notUsedCategoryList");
  isGiven.assign(frequencies.size(), false);
  for (const double code : firstCategories) {
    if (code >= 0.0 && code < static_cast<double>(isGiven.size())) {
      isGiven[static_cast<std::size_t>(code)] = true;
    }
  }
  return Obstacle::None;
}

TwoClasses::Obstacle TwoClasses::TakeCategoriesOfData(
    const std::map<std::int32_t, std::int64_t>& frequencies) {
  if (frequencies.size() > 2) return Obstacle::TooManyCategories;
  if (frequencies.empty()) return Obstacle::NoCategories;
  const auto first = frequencies.begin();
  firstCount = first->second;
  if (frequencies.size() == 1) {
    if (firstCount < 1) return Obstacle::NoCategories;
    firstCategories.assign(1, first->first);
    return Obstacle::None;
  }
  // Two categories are named also where neither has data.
  const auto second = std::next(first);
  secondCount = second->second;
  firstCategories.assign(1, first->first);
  secondCategories.assign(1, second->first);
  return Total() == 0 ? Obstacle::NoCategories : Obstacle::None;
}

template <typename IsFirst>
void TwoClasses::CountBy(RecordBatch& batch, const RecordWeight& weight, IsFirst isFirst) {
  weight.UseTruncated(batch, [&](auto weightAt) {
    std::int64_t first = 0;
    std::int64_t all = 0;
    for (std::size_t i = 0; i < batch.Size(); ++i) {
      const std::int64_t w = weightAt(i);
      first += isFirst(i) ? w : 0;
      all += w;
    }
    firstCount += first;
    secondCount += all - first;
  });
}

void TwoClasses::Count(RecordBatch& batch, const RecordWeight& weight) {
  if (batch.Size() == 0) return;
  if (isContinuous) {
    const double* values = batch.Of(variableIndex);
    CountBy(batch, weight, [&](std::size_t i) { return !(values[i] > cutPoint); });
  } else if (formation == Formation::GivenCategories) {
    const std::int32_t* codes = batch.TruncatedOf(variableIndex);
    CountBy(batch, weight, [&](std::size_t i) {
      const auto code = static_cast<std::size_t>(codes[i]);
      return code < isGiven.size() && isGiven[code] != 0;
    });
  } else if (isFirstRecord) {
    // The frequencies are the counts; the first record only tells which class comes first.
    isFirstRecord = false;
    const double first = *batch.TruncatedOf(variableIndex);
    if (!secondCategories.empty() && first != firstCategories.front()) {
      std::swap(firstCount, secondCount);
      std::swap(firstCategories, secondCategories);
    }
  }
}
