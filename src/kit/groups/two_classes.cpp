#include "kit/groups/two_classes.h"

#include <utility>

void TwoClasses::ReadFormation(const QDSettings& settings) {
  std::string text;
  static_cast<void>(settings.GetSettingValByName("classFormation", text));
  formation = text == "givenCategoryList" ? Formation::GivenCategories
              : text == "givenCutPoint"   ? Formation::CutPoint
                                          : Formation::FromData;
  static_cast<void>(settings.GetSettingValByName("variableIndex", variableIndex));
  weight = RecordWeight(settings);
  std::int32_t level = 0;
  static_cast<void>(settings.GetSettingValByName("measureLevel", level));
  isContinuous = level == static_cast<std::int32_t>(VariableKind::Continuous);
}

std::int32_t TwoClasses::Prepare(const QDSettings& settings, const UnivariateResults* sharedData) {
  firstCount = 0;
  secondCount = 0;
  firstRecord = true;
  if (isContinuous) {
    const bool given = settings.GetSettingValByName("givenCutPoint", cutPoint);
    if (!given || cutPoint == QDMV::gMissingValue) {
      cutPoint =
          sharedData == nullptr
              ? QDMV::gMissingValue
              : (sharedData->GetMinimum(variableIndex) + sharedData->GetMaximum(variableIndex)) *
                    0.5;
    }
    return 0;
  }
  std::map<std::int32_t, std::int64_t> frequencies;
  if (sharedData == nullptr || !sharedData->GetFrequencies(variableIndex, frequencies)) {
    return kNoFrequencies;
  }
  if (formation != Formation::GivenCategories) return TakeCategoriesOfData(frequencies);
  static_cast<void>(settings.GetSettingValByName("givenCategoryList", firstCategories));
  static_cast<void>(settings.GetSettingValByName("originalGivenCategoryList", givenTexts));
  static_cast<void>(settings.GetSettingValByName("notUsedCategoryList", secondCategories));
  isFirst.assign(frequencies.size(), false);
  for (const double code : firstCategories) {
    if (code >= 0.0 && code < static_cast<double>(isFirst.size())) {
      isFirst[static_cast<std::size_t>(code)] = true;
    }
  }
  return 0;
}

std::int32_t TwoClasses::TakeCategoriesOfData(
    const std::map<std::int32_t, std::int64_t>& frequencies) {
  if (frequencies.size() > 2) return kTooManyCategories;
  if (frequencies.empty()) return kNoCategories;
  const auto first = frequencies.begin();
  firstCount = first->second;
  if (frequencies.size() == 1) {
    if (firstCount < 1) return kNoCategories;
    firstCategories.assign(1, first->first);
    return 0;
  }
  // Two categories are named also where neither has data.
  const auto second = std::next(first);
  secondCount = second->second;
  firstCategories.assign(1, first->first);
  secondCategories.assign(1, second->first);
  return firstCount == 0 && secondCount == 0 ? kNoCategories : 0;
}

void TwoClasses::Count(const Record& record) {
  const double value = record[variableIndex];
  bool first = false;
  if (isContinuous) {
    first = !(value > cutPoint);
  } else if (formation == Formation::GivenCategories) {
    const auto code = static_cast<std::size_t>(TruncateToInt32(value));
    first = code < isFirst.size() && isFirst[code];
  } else {
    // The frequencies are the counts; the first record only tells which class comes first.
    if (firstRecord && !secondCategories.empty() && value != firstCategories.front()) {
      std::swap(firstCount, secondCount);
      std::swap(firstCategories, secondCategories);
    }
    firstRecord = false;
    return;
  }
  (first ? firstCount : secondCount) += weight.Truncated(record);
}
