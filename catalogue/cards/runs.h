#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/sentences.h"
#include "catalogue/settings.h"

namespace catalogue::runs {

inline constexpr WordKey kFormation =
    Word("contVarClassFormation", "cutPointMedian|cutPointMean|cutPointValue",
         "has to be given for a continuous field",
         "how a continuous field is divided into two groups: values below the cut point and from "
         "it on, at the median, the mean or `cutPointValue`",
         "cutPointMedian");
inline constexpr NumberKey kCutPointValue = Number(
    "cutPointValue", kAnyNumber, "has to be given with `contVarClassFormation` `cutPointValue`",
    "the smallest value of the upper group", "3.5");
inline constexpr const Setting* kCutPoint[] = {&kFormation, &kCutPointValue};

inline constexpr OptionWord kCutWords[] = {
    {"median", {kFormation, "cutPointMedian"}},
    {"mean", {kFormation, "cutPointMean"}},
};
inline constexpr Option kOptions[] = {
    {"cut",
     OptionKind::NumberOrWord,
     Given(kCutPointValue),
     {kFormation, "cutPointValue"},
     {kFormation, "cutPointMedian"},
     kCutWords,
     "median|mean|NUMBER",
     "median",
     "where the values of a continuous field are split into two groups"},
    CategoriesOption(
        "group1", settings::kGivenCategories, {settings::kCategoryClasses, "givenCategoryList"},
        {settings::kCategoryClasses, "getFromData"}, "A|B", "the first of exactly two categories",
        "the categories that form the first group of a categorical field")};

inline constexpr Hypothesis kHypotheses[] = {
    {"ACutPoint",
     "Values of {0} below {figure 1} and from {figure 1} on follow each other in random order."},
    {kNone, "In {0}, {categories 1} and {categories 2} follow each other in random order."}};

inline constexpr Code kBadEntry{
    220101, Kind::Error, "the field or the way to divide it is missing or unknown",
    "Name a field, and median, mean, mode or a value of your own as the cut point."};
inline constexpr Code kUnknownVariable{220103, Kind::Error, sentences::kUnknownField,
                                       Meaning::Name};
inline constexpr Code kBadCategoryList{
    220109, Kind::Error, "the given categories are missing, or leave one of the two groups empty",
    "Give some of the field's categories as the first group, and not all of them."};
inline constexpr Code kNoCutPoint{220110, Kind::Error, sentences::kNoCutPoint};
inline constexpr Code kNotTwoGroups{
    220111, Kind::Error, "the categorical field does not have exactly two groups",
    "Choose a field with two categories, or give the categories of the first group."};
inline constexpr Code kEmptyGroup{220112, Kind::Error,
                                  "all records lie on one side of the cut point",
                                  "Choose a cut point with records on both sides."};
inline constexpr Code kCodes[] = {kBadEntry,   kUnknownVariable, kBadCategoryList,
                                  kNoCutPoint, kNotTwoGroups,    kEmptyGroup};

inline constexpr Card kCard{.name = "runs",
                            .key = "ORuns",
                            .entry = "ORuns",
                            .element = "ORuns",
                            .family = Family::OneSample,
                            .purpose = Purpose::HypothesisTest,
                            .title = "Runs test of randomness",
                            .hypotheses = kHypotheses,
                            .fields = options::kEachField,
                            .warningName = "Runs",
                            .categoricalSettings = settings::kCategories,
                            .continuousSettings = kCutPoint,
                            .options = kOptions,
                            .decision = options::kExactDecides,
                            .effectSize = options::EffectSizeR(EffectFormula::StandardisedByN),
                            .page = "runs.md",
                            .codes = kCodes};

}  // namespace catalogue::runs
