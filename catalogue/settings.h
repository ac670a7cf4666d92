#pragma once

#include "catalogue/card.h"

/// Keys of the parameter document that several tests read.
namespace catalogue::settings {

inline constexpr FlagKey kIsSelected =
    Flag("isSelected", "whether the test is to run; a test's key without it asks for nothing");

inline constexpr WordKey kComparison =
    Word("typeOfMultipleComparison", "none|pairWise|stepWise", "none",
         "what to compare after a significant overall test: each pair of samples, or homogeneous "
         "subsets step by step",
         "pairWise");
/// Of tests that refuse an entry without it.
inline constexpr WordKey kNeededComparison =
    Word(kComparison.key, kComparison.values, "has to be given", kComparison.meaning,
         kComparison.example);

// The groups of a two-group test.
inline constexpr FlagKey kGroupsAreGiven =
    Flag("userSpecifyGroupList",
         "whether the two groups are those of `group1List` and `group2List`; otherwise they are "
         "the two categories of the group field");
inline constexpr Setting kGroup1 =
    Other("group1List", Type::Categories, "has to be given with `userSpecifyGroupList`",
          "the categories of the group field that form the first group", "a|b");
inline constexpr Setting kGroup2 =
    Other("group2List", Type::Categories, "has to be given with `userSpecifyGroupList`",
          "the categories of the group field that form the second group", "c");
inline constexpr const Setting* kTwoGroups[] = {&kGroupsAreGiven, &kGroup1, &kGroup2};

// The two classes of one field.
inline constexpr WordKey kCategoryClasses =
    Word("catVarClassFormation", "getFromData|givenCategoryList",
         "`getFromData` for `binomial`; `runs` needs it for a categorical field",
         "how a categorical field is divided into two classes: by its own two categories, or into "
         "those of `givenCategoryList` and the others",
         "givenCategoryList");
inline constexpr Setting kGivenCategories =
    Other("givenCategoryList", Type::Categories,
          "has to be given with `catVarClassFormation` `givenCategoryList`",
          "the categories of the first class", "a|b");
inline constexpr const Setting* kCategories[] = {&kCategoryClasses, &kGivenCategories};

inline constexpr WordKey kMidPointClasses =
    Word("contVarClassFormation", "sampleMidPoint|givenCutPoint",
         "has to be given for a continuous field",
         "how a continuous field is divided into two classes: values up to the middle of the "
         "range, (minimum + maximum) / 2, or up to `givenCutPoint`",
         "givenCutPoint");
inline constexpr NumberKey kGivenCutPoint = Number(
    "givenCutPoint", kAnyNumber, "has to be given with `contVarClassFormation` `givenCutPoint`",
    "the largest value of the first class of a continuous field", "3.5");
inline constexpr const Setting* kCutPoint[] = {&kMidPointClasses, &kGivenCutPoint};

// Success of related fields.
inline constexpr WordKey kSuccessFormation =
    Word("classFormation", "getFromData|givenCategoryList", "getFromData",
         "whether success is the first record's category or the categories that are given",
         "givenCategoryList");

}  // namespace catalogue::settings
