#pragma once

#include "catalogue/card.h"
#include "catalogue/settings.h"

/// Options and fields that several tests have alike.
namespace catalogue::options {

inline constexpr OptionWord kComparisonWords[] = {
    {"none", {settings::kComparison, "none"}},
    {"pairwise", {settings::kComparison, "pairWise"}},
    {"stepwise", {settings::kComparison, "stepWise"}},
};
inline constexpr Option kComparison = WordOption(
    "compare", {settings::kComparison, "none"}, kComparisonWords, "none|pairwise|stepwise", "none",
    "what to compare after a significant overall test: each pair, or homogeneous subsets step by "
    "step");
inline constexpr Option kComparisonOnly[] = {kComparison};

inline constexpr Option kGroup1 =
    CategoriesOption("group1", settings::kGroup1, {settings::kGroupsAreGiven, "true"}, kNone, "A|B",
                     "the first of exactly two categories",
                     "the categories that form the first group; together with group2");
inline constexpr Option kGroup2 =
    CategoriesOption("group2", settings::kGroup2, {settings::kGroupsAreGiven, "true"}, kNone, "C",
                     "the second of exactly two categories",
                     "the categories that form the second group; together with group1");
inline constexpr Option kTwoGroups[] = {kGroup1, kGroup2};

/// The categories of success, which `setting` holds.
[[nodiscard]] constexpr Option Success(const Setting& setting) {
  return CategoriesOption("success", setting, {settings::kSuccessFormation, "givenCategoryList"},
                          {settings::kSuccessFormation, "getFromData"}, "A|B",
                          "the first record's category",
                          "the categories that count as success; all others count as failure");
}

inline constexpr Fields kEachField{
    .measures = kAllMeasures,
    .fewest = 1,
    .most = 1,
    .groups = Groups::None,
    .description = "each continuous, nominal or ordinal field on its own"};
inline constexpr Fields kEachContinuous{kContinuous, 1, 1, Groups::None,
                                        "each continuous field on its own"};
inline constexpr Fields kContinuousPair{kContinuous, 2, 2, Groups::None,
                                        "exactly 2 continuous fields"};
inline constexpr Fields kSeveralContinuous{kContinuous, 2, kAnyCount, Groups::None,
                                           "2 or more continuous fields"};
inline constexpr Fields kInTwoGroups{
    .measures = kContinuous,
    .fewest = 1,
    .most = 1,
    .groups = Groups::Two,
    .description = "continuous fields; a group field with two groups"};
inline constexpr Fields kInSeveralGroups{
    .measures = kContinuous,
    .fewest = 1,
    .most = 1,
    .groups = Groups::Several,
    .description = "continuous fields; a group field with 2 or more groups"};

inline constexpr Decision kExactDecides{Decides::ExactWhereGiven, kNone};
inline constexpr Decision kAsymptoticDecides{Decides::Asymptotic, kNone};
inline constexpr Decision kNothingDecides{Decides::Nothing, kNone};

inline constexpr EffectSize kNoEffectSize{EffectFormula::None, kNone, kNone};
[[nodiscard]] constexpr EffectSize RankBiserial(EffectFormula formula) {
  return {formula, "Rank-biserial correlation", "r"};
}
[[nodiscard]] constexpr EffectSize KendallsW(EffectFormula formula) {
  return {formula, "Kendall's W", "W"};
}
[[nodiscard]] constexpr EffectSize EffectSizeR(EffectFormula formula) {
  return {formula, "Effect size r", "r"};
}

}  // namespace catalogue::options
