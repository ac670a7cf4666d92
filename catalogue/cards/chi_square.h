#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/sentences.h"

namespace catalogue::chi_square {

inline constexpr WordKey kFormation =
    Word("classFormation", "getFromData|givenExpectedValue|custom", "has to be given",
         "what is compared: that all categories are equally frequent, or that they have the "
         "proportions of `custom`, which `custom` says too",
         "givenExpectedValue");
inline constexpr Setting kCustom =
    Other("custom", Type::Expected, "has to be given with `classFormation` `givenExpectedValue`",
          "the hypothesised proportions, up to a common factor: a structure with `categoryValue` "
          "and `expectedValue` for each category to be compared; other categories are left out",
          "a=2|b=1");
inline constexpr Setting kCategoryValue = Other("categoryValue", Type::Value, "has to be given",
                                                "in a structure of `custom`: the category", "a");
inline constexpr NumberKey kExpectedValue = Number(
    "expectedValue", kAboveZero, "has to be given",
    "in a structure of `custom`: what is expected of the category, up to a common factor", "2");
inline constexpr const Setting* kSettings[] = {&kFormation, &kCustom};
/// In the structures of `custom`.
inline constexpr const Setting* kItemSettings[] = {&kCategoryValue, &kExpectedValue};

inline constexpr Option kOptions[] = {{"expected",
                                       OptionKind::Expected,
                                       Given(kCustom),
                                       {kFormation, "givenExpectedValue"},
                                       {kFormation, "getFromData"},
                                       kNone,
                                       "a=2|b=1",
                                       "all categories equally often",
                                       "the hypothesised proportions, as category=number"}};
inline constexpr Fields kFields{kCategorical, 1, 1, Groups::None,
                                "each nominal or ordinal field on its own"};

inline constexpr Hypothesis kHypotheses[] = {
    {"Default", "The categories of {0} are equally frequent."},
    {kNone, "The categories of {0} have the given proportions."}};

inline constexpr Code kSettingAbsent{
    220201, Kind::Error, "a setting that the test needs is missing",
    "Give the field and the way in which its categories are formed."};
inline constexpr Code kNoVariableName{220203, Kind::Error, sentences::kNoFieldNamed};
inline constexpr Code kUnfitVariable{220204, Kind::Error,
                                     "a field is not in the data or not categorical[: %*]",
                                     "Compare the name with the header of the data; call the field "
                                     "nominal or ordinal if it holds categories.",
                                     Meaning::Field};
inline constexpr Code kTooFewCategories{
    220209, Kind::Error, "the field or the given list has fewer than two categories[: %*]",
    "Test a field with at least two categories, and give at least two with expected values.",
    Meaning::Field};
inline constexpr Code kExpectedCounts{220211, Kind::Help, sentences::kExpectedCounts};
inline constexpr Code kBadExpectedValues{
    220212, Kind::Error, "the expected values are incomplete or not above 0[: %*]",
    "Give an expected value above 0 for each category to be compared.", Meaning::Field};
inline constexpr Code kCodes[] = {kSettingAbsent,    kNoVariableName, kUnfitVariable,
                                  kTooFewCategories, kExpectedCounts, kBadExpectedValues};

inline constexpr Card kCard{.name = "chi-square",
                            .key = "OChiSquare",
                            .entry = "OChiSquare",
                            .element = "OChiSquare",
                            .family = Family::OneSample,
                            .purpose = Purpose::HypothesisTest,
                            .title = "Chi-square test of proportions",
                            .hypotheses = kHypotheses,
                            .fields = kFields,
                            .warningName = "ChiSquare",
                            .settings = kSettings,
                            .options = kOptions,
                            .decision = options::kExactDecides,
                            .effectSize = {EffectFormula::RootOfChiSquare, "Cohen's w", "w"},
                            .page = "chi_square.md",
                            .codes = kCodes};

}  // namespace catalogue::chi_square
