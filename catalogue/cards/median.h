#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/sentences.h"
#include "catalogue/settings.h"

namespace catalogue::median {

inline constexpr FlagKey kMedianIsGiven = Flag(
    "userSpecifyMedian",
    "whether `median` is the hypothesised one; otherwise it is the median of all groups together");
inline constexpr NumberKey kMedian =
    Number("median", kAnyNumber, "has to be given with `userSpecifyMedian`",
           "the hypothesised common median", "12");
inline constexpr FlagKey kGroupRange =
    Flag("userSpecifyGroupRange", "hosts write it; all groups take part, whatever it says");
inline constexpr const Setting* kSettings[] = {&settings::kComparison, &kMedianIsGiven, &kMedian,
                                               &kGroupRange};
inline constexpr Option kOptions[] = {
    NumberOption("median", kMedian, {kMedianIsGiven, "true"}, kNone,
                 "the median of all groups together", "the hypothesised common median"),
    options::kComparison};

inline constexpr Hypothesis kHypotheses[] = {
    {kNone, "The median of {0} is the same in all groups of {1}."}};

inline constexpr Code kNoMedian{222302, Kind::Error, "the median is to be given, and is not",
                                "Give the median as a number."};
inline constexpr Code kUnknownVariable{222303, Kind::Error, sentences::kUnknownPairOfFields,
                                       Meaning::Name};
inline constexpr Code kNotContinuous{222309, Kind::Error, sentences::kNotContinuous,
                                     Meaning::Field};
inline constexpr Code kNotCategorical{222310, Kind::Error, sentences::kGroupNotCategorical,
                                      Meaning::Field};
inline constexpr Code kExpectedCounts{222311, Kind::Help, sentences::kExpectedCounts};
inline constexpr Code kTooFewGroups{222312, Kind::Error, sentences::kTooFewGroups};
inline constexpr Code kOneSided{
    222313, Kind::Error, "all records lie on one side of the median",
    "Give a median with records at or below and above it, or test a field with fewer ties."};
inline constexpr Code kTooFewCategories{222315, Kind::Error, sentences::kTooFewCategories};
inline constexpr Code kTooFewStepwise{222316, Kind::Warning, sentences::kStepwiseTooFew};
inline constexpr Code kNotSignificantStepwise{222317, Kind::Warning,
                                              sentences::kStepwiseNotSignificant};
inline constexpr Code kTooFewPairwise{222318, Kind::Warning, sentences::kPairwiseTooFew};
inline constexpr Code kNotSignificantPairwise{222319, Kind::Warning,
                                              sentences::kPairwiseNotSignificant};
inline constexpr Code kCodes[] = {
    kNoMedian,       kUnknownVariable,        kNotContinuous,  kNotCategorical,
    kExpectedCounts, kTooFewGroups,           kOneSided,       kTooFewCategories,
    kTooFewStepwise, kNotSignificantStepwise, kTooFewPairwise, kNotSignificantPairwise};

inline constexpr Card kCard{.name = "median",
                            .key = "IKMedian",
                            .entry = "IMedian",
                            .element = "IMedian",
                            .family = Family::Independent,
                            .purpose = Purpose::HypothesisTest,
                            .title = "Median test",
                            .hypotheses = kHypotheses,
                            .fields = options::kInSeveralGroups,
                            .settings = kSettings,
                            .options = kOptions,
                            .decision = options::kExactDecides,
                            .effectSize = {EffectFormula::RootOfChiSquare, "Cram\u00e9r's V", "V"},
                            .page = "median.md",
                            .codes = kCodes};

}  // namespace catalogue::median
