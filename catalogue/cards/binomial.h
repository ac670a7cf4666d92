#pragma once

#include "catalogue/card.h"
#include "catalogue/cards/confidence_interval.h"
#include "catalogue/options.h"
#include "catalogue/sentences.h"
#include "catalogue/settings.h"
#include "catalogue/shared_codes.h"

namespace catalogue::binomial {

inline constexpr NumberKey kTestProbability = Number(
    "testProbability", kProbability, 0.5, "the hypothesised probability of the first class", "0.4");
inline constexpr const Setting* kSettings[] = {&kTestProbability};

inline constexpr OptionWord kIntervals[] = {
    {"clopper-pearson", {confidence_interval::kClopperPearson, "true"}},
    {"jeffreys", {confidence_interval::kJeffreys, "true"}},
    {"profile", {confidence_interval::kProfileLikelihood, "true"}},
};
inline constexpr Option kOptions[] = {
    NumberOption("p", kTestProbability, kNone, kNone, "0.5",
                 "the hypothesised probability of the first class, between 0 and 1"),
    CategoriesOption(
        "success", settings::kGivenCategories, {settings::kCategoryClasses, "givenCategoryList"},
        {settings::kCategoryClasses, "getFromData"}, "A|B", "the first record's category",
        "the categories of the first class of a categorical field; all others form the second"),
    NumberOption("cut", settings::kGivenCutPoint, {settings::kMidPointClasses, "givenCutPoint"},
                 {settings::kMidPointClasses, "sampleMidPoint"}, "the middle of the range",
                 "the largest value of the first class of a continuous field"),
    {"intervals", OptionKind::Words, kNone, kNone, kNone, kIntervals,
     "clopper-pearson|jeffreys|profile", "none",
     "confidence intervals of the first class's proportion, by one method or more"}};

inline constexpr Hypothesis kHypotheses[] = {
    {"ACutPoint", "The probability that {0} is at most {figure 1} is {figure 2}."},
    {kNone, "The probability that {0} is {categories 1} is {figure 3}."}};

inline constexpr TwoClassCodes kClassCodes{221300, 221312};
inline constexpr Code kNoSummaries{221306, Kind::Error, sentences::kNoSummary};
inline constexpr Code kTooManyCategories{
    221309, Kind::Error, "the field has more than two categories",
    "Choose a field with two categories, or give those of the first class."};
inline constexpr Code kNoCategories{221310, Kind::Error, "the categories hold no records",
                                    "Check the missing values and the weights of the records."};
inline constexpr Code kBelowProbability{
    221311, Kind::Help,
    "the observed proportion of the first class is below the hypothesised one[, %0], so the lower "
    "tail is tested",
    "Nothing needs doing: the p-value is the one-sided one of that direction."};
inline constexpr Code kBadProbability{221317, Kind::Error,
                                      "the test probability is not between 0 and 1",
                                      "Give a probability above 0 and below 1."};
inline constexpr auto kCodes = Together(kClassCodes, kNoSummaries, kTooManyCategories,
                                        kNoCategories, kBelowProbability, kBadProbability);

inline constexpr Card kCard{.name = "binomial",
                            .key = "OBinomial",
                            .entry = "OBinomial",
                            .element = "OBinomial",
                            .family = Family::OneSample,
                            .purpose = Purpose::HypothesisTest,
                            .title = "Binomial test",
                            .hypotheses = kHypotheses,
                            .fields = options::kEachField,
                            .warningName = "Binomial",
                            .settings = kSettings,
                            .categoricalSettings = settings::kCategories,
                            .continuousSettings = settings::kCutPoint,
                            .options = kOptions,
                            .decision = options::kAsymptoticDecides,
                            .effectSize = {EffectFormula::ProportionAngles, "Cohen's h", "h"},
                            .page = "binomial.md",
                            .codes = kCodes};

}  // namespace catalogue::binomial
