#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/settings.h"
#include "catalogue/shared_codes.h"

namespace catalogue::moses {

inline constexpr FlagKey kOutliersAreGiven =
    Flag("userSpecifyNumberOfOutliers", "whether `NumberOfOutliers` is given");
inline constexpr NumberKey kOutliers =
    Setting{.key = "NumberOfOutliers",
            .type = Type::Count,
            .range = kFromZero,
            .values = kNone,
            .byDefault =
                "has to be given with `userSpecifyNumberOfOutliers`; without: 5 % of the control "
                "group, at least 1",
            .meaning = "how many values are trimmed from each end of the control group",
            .example = "2"};
inline constexpr const Setting* kSettings[] = {&kOutliersAreGiven, &kOutliers,
                                               &settings::kGroupsAreGiven, &settings::kGroup1,
                                               &settings::kGroup2};
inline constexpr Option kOptions[] = {
    options::kGroup1,
    options::kGroup2,
    {"outliers",
     OptionKind::Count,
     Given(kOutliers),
     {kOutliersAreGiven, "true"},
     kNone,
     kNone,
     "COUNT",
     "5 % of the control group, at least 1",
     "how many values are trimmed from each end of the control group"}};

inline constexpr Hypothesis kHypotheses[] = {
    {kNone, "The range of {0} is the same in both groups of {1}."}};

inline constexpr TwoGroupCodes kTwoGroupCodes{220500};
inline constexpr Code kBadOutliers{
    220516, Kind::Error,
    "the number of outliers is missing, negative, or leaves nothing of the control group",
    "Give a number from 0 up to less than half of the control group, or let it be chosen."};
inline constexpr auto kCodes = Together(kTwoGroupCodes, kBadOutliers);

inline constexpr Card kCard{.name = "moses",
                            .key = "IMoses",
                            .entry = "IMoses",
                            .element = "IMoses",
                            .family = Family::Independent,
                            .purpose = Purpose::HypothesisTest,
                            .title = "Moses test of extreme reactions",
                            .hypotheses = kHypotheses,
                            .fields = options::kInTwoGroups,
                            .settings = kSettings,
                            .options = kOptions,
                            .decision = options::kExactDecides,
                            .effectSize = options::kNoEffectSize,
                            .page = "moses.md",
                            .codes = kCodes};

}  // namespace catalogue::moses
