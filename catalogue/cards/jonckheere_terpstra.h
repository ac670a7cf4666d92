#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/sentences.h"
#include "catalogue/settings.h"
#include "catalogue/shared_codes.h"

namespace catalogue::jonckheere_terpstra {

inline constexpr WordKey kOrder = Word(
    "orderOfHypotheses", "orderSmallestToLargest|orderLargestToSmallest", "orderSmallestToLargest",
    "the order of the groups that the alternative names: by their values ascending or descending",
    "orderLargestToSmallest");
inline constexpr const Setting* kSettings[] = {&settings::kComparison, &kOrder};

inline constexpr OptionWord kOrderWords[] = {
    {"ascending", {kOrder, "orderSmallestToLargest"}},
    {"descending", {kOrder, "orderLargestToSmallest"}},
};
inline constexpr Option kOptions[] = {
    WordOption("order", kNone, kOrderWords, "ascending|descending", "ascending",
               "the order of the groups that the alternative names"),
    options::kComparison};

inline constexpr Hypothesis kHypotheses[] = {{kNone,
                                              "The distribution of {0} is the same in all groups "
                                              "of {1}, against a trend over the order {order 1}."}};

inline constexpr Code kUnknownVariable{222203, Kind::Error, sentences::kUnknownField,
                                       Meaning::Name};
inline constexpr Code kTooFewGroups{
    222210, Kind::Error, "groups without records cannot be compared",
    "Check the categories of the group field, the missing values and the weights."};
inline constexpr ComparisonCodes kComparisonCodes{{.tooFewPairwise = 222211,
                                                   .tooFewStepwise = 222212,
                                                   .notSignificantPairwise = 222213,
                                                   .notSignificantStepwise = 222214}};
inline constexpr Code kNoVariableName{222215, Kind::Error, sentences::kNoFieldNamed};
inline constexpr Code kNoGroup{222216, Kind::Error, sentences::kNoGroupNamed};
inline constexpr Code kNotCategorical{222217, Kind::Error, sentences::kGroupNotCategorical,
                                      Meaning::Field};
inline constexpr Code kNotContinuous{222218, Kind::Error, sentences::kNotContinuous,
                                     Meaning::Field};
inline constexpr auto kCodes = Together(kUnknownVariable, kTooFewGroups, kComparisonCodes,
                                        kNoVariableName, kNoGroup, kNotCategorical, kNotContinuous);

inline constexpr Card kCard{.name = "jonckheere-terpstra",
                            .key = "IJonckheereTerpstra",
                            .entry = "IJonckheereTerpstra",
                            .element = "IJonckheereTerpstra",
                            .family = Family::Independent,
                            .purpose = Purpose::HypothesisTest,
                            .title = "Jonckheere-Terpstra test for ordered alternatives",
                            .hypotheses = kHypotheses,
                            .fields = options::kInSeveralGroups,
                            .settings = kSettings,
                            .options = kOptions,
                            .decision = options::kExactDecides,
                            .effectSize = options::kNoEffectSize,
                            .page = "jonckheere_terpstra.md",
                            .codes = kCodes};

}  // namespace catalogue::jonckheere_terpstra
