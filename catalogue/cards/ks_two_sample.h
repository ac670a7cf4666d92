#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/sentences.h"
#include "catalogue/settings.h"

namespace catalogue::ks_two_sample {

inline constexpr Hypothesis kHypotheses[] = {
    {kNone, "The distribution of {0} is the same in both groups of {1}."}};

inline constexpr Code kUnreadable{
    222001, Kind::Error,
    "a setting that the test needs is missing, or a list of categories is empty",
    "Name the fields, and give at least one category for each group if groups are given."};
inline constexpr Code kUnknownVariable{222003, Kind::Error, sentences::kUnknownPairOfFields,
                                       Meaning::Name};
inline constexpr Code kExponentialFailed{222005, Kind::Error,
                                         "an exponential is out of the range of numbers",
                                         "Check the data for values of an extreme size."};
inline constexpr Code kNotTwoCategories{222009, Kind::Error, sentences::kNotTwoGroups};
inline constexpr Code kEmptyGroup{222010, Kind::Error, sentences::kGroupWithoutData};
inline constexpr Code kLastOfNeitherGroup{222011, Kind::Warning,
                                          "the last category of the records is in neither group",
                                          "Check the lists of categories that make up the groups."};
inline constexpr Code kNotContinuous{222012, Kind::Error, sentences::kNotContinuous,
                                     Meaning::Field};
inline constexpr Code kNotCategorical{222013, Kind::Error, sentences::kGroupNotCategorical,
                                      Meaning::Field};
inline constexpr Code kCodes[] = {kUnreadable,       kUnknownVariable, kExponentialFailed,
                                  kNotTwoCategories, kEmptyGroup,      kLastOfNeitherGroup,
                                  kNotContinuous,    kNotCategorical};

inline constexpr Card kCard{.name = "ks-two-sample",
                            .key = "IKolmogorovSmirnov",
                            .entry = "IKolmogorovSmirnov",
                            .element = "IKolmogorovSmirnov",
                            .family = Family::Independent,
                            .purpose = Purpose::HypothesisTest,
                            .title = "Two-sample Kolmogorov-Smirnov test",
                            .hypotheses = kHypotheses,
                            .fields = options::kInTwoGroups,
                            .settings = settings::kTwoGroups,
                            .options = options::kTwoGroups,
                            .decision = options::kExactDecides,
                            .effectSize = options::kNoEffectSize,
                            .page = "ks_two_sample.md",
                            .codes = kCodes};

}  // namespace catalogue::ks_two_sample
