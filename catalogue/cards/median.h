#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/sentences.h"
#include "catalogue/settings.h"
#include "catalogue/shared_codes.h"

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
inline constexpr SeveralGroupsCodes kGroupsCodes{222300};
inline constexpr Code kExpectedCounts{222311, Kind::Help, sentences::kExpectedCounts};
inline constexpr Code kOneSided{
    222313, Kind::Error, "all records lie on one side of the median",
    "Give a median with records at or below and above it, or test a field with fewer ties."};
inline constexpr auto kCodes = Together(kNoMedian, kGroupsCodes, kExpectedCounts, kOneSided);

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
