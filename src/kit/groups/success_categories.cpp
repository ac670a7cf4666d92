#include "kit/groups/success_categories.h"

#include <algorithm>
#include <set>
#include <utility>

#include "kit/groups/category_selection.h"

bool SuccessCategories::SameCategory(std::size_t placeA, std::int32_t codeA, std::size_t placeB,
                                     std::int32_t codeB) const {
  return SameCategoryIn(Variable(placeA), Variable(placeB), codeB) == codeA;
}

void SuccessCategories::Read(const SettingsReader& settings,
                             std::vector<std::int32_t> variableIndices) {
  tested = std::move(variableIndices);
  areGiven = settings.Flag("userSpecifyGroupList");
  if (!areGiven) return;
  givenNumbers = settings.List<double>("successCategoryListNum");
  givenTexts = settings.List<std::string>("successCategoryListStr");
}

std::int32_t SuccessCategories::Check(const UnivariateResults* sharedData) {
  if (sharedData == nullptr) return codes.noSharedData;
  return areGiven ? TakeGiven() : CheckCategories(*sharedData);
}

std::int32_t SuccessCategories::CheckCategories(const UnivariateResults& sharedData) const {
  std::size_t widest = 0;
  std::int32_t largest = 0;
  std::vector<std::int32_t> counts;
  for (std::size_t place = 0; place < tested.size(); ++place) {
    counts.push_back(sharedData.GetCategoryCount(tested[place]));
    if (counts.back() != 1 && counts.back() != 2) return codes.notTwoCategories;
    if (counts.back() > largest) {
      largest = counts.back();
      widest = place;
    }
  }
  if (largest == 1) {
    std::size_t second = 0;  // 0: no variable yet with another value than the first one's
    for (std::size_t place = 1; place < tested.size(); ++place) {
      if (SameCategory(0, 0, place, 0)) continue;
      if (second == 0) {
        second = place;
      } else if (!SameCategory(second, 0, place, 0)) {
        return codes.tooManyValues;
      }
    }
    return second == 0 ? codes.notTwoCategories : 0;
  }
  for (std::size_t place = 0; place < tested.size(); ++place) {
    for (std::int32_t code = 0; code < counts[place]; ++code) {
      if (!SameCategory(place, code, widest, 0) && !SameCategory(place, code, widest, 1)) {
        return codes.notTwoCategories;
      }
    }
  }
  return 0;
}

std::int32_t SuccessCategories::TakeGiven() {
  if (givenNumbers.empty() && givenTexts.empty()) return codes.noGivenSplit;
  const std::set<double> numbers(givenNumbers.begin(), givenNumbers.end());
  const std::set<std::string> texts(givenTexts.begin(), givenTexts.end());
  bool anySet = false;
  bool anyMissed = false;
  isSuccess.assign(tested.size(), {});
  for (std::size_t place = 0; place < tested.size(); ++place) {
    const QDCategoryList* categories = Variable(place).GetCategories();
    const std::int32_t count = categories == nullptr ? 0 : categories->Size();
    isSuccess[place].assign(static_cast<std::size_t>(count), false);
    for (std::int32_t code = 0; code < count; ++code) {
      const bool given = numbers.empty() ? texts.contains(categories->GetText(code))
                                         : numbers.contains(categories->GetNumber(code));
      isSuccess[place][static_cast<std::size_t>(code)] = given;
      (given ? anySet : anyMissed) = true;
    }
  }
  return anySet && anyMissed ? 0 : codes.noGivenSplit;
}

void SuccessCategories::DeriveFrom(std::int32_t code) {
  isSuccess.assign(tested.size(), {});
  const std::int32_t own = Variable(0).GetCategoryCount();
  isSuccess.front().assign(static_cast<std::size_t>(std::max(own, 0)), false);
  if (code >= 0 && code < own) isSuccess.front()[static_cast<std::size_t>(code)] = true;
  for (std::size_t place = 1; place < tested.size(); ++place) {
    const std::int32_t count = Variable(place).GetCategoryCount();
    for (std::int32_t other = 0; other < count; ++other) {
      isSuccess[place].push_back(SameCategory(place, other, 0, code));
    }
  }
}

std::vector<double> SuccessCategories::CategoriesOf(std::size_t place, bool success) const {
  std::vector<double> list;
  if (place >= isSuccess.size()) return list;
  for (std::size_t code = 0; code < isSuccess[place].size(); ++code) {
    if ((isSuccess[place][code] != 0) == success) list.push_back(static_cast<double>(code));
  }
  return list;
}
