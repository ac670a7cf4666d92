#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/settings.h"
#include "catalogue/shared_codes.h"

namespace catalogue::confidence_interval {

inline constexpr FlagKey kClopperPearson =
    Flag("isDoClopperPearson", "the exact interval of Clopper and Pearson");
inline constexpr FlagKey kJeffreys = Flag("isDoJeffreys", "the interval of Jeffreys");
inline constexpr FlagKey kProfileLikelihood =
    Flag("isDoProfileLikelihood", "the interval of the profile likelihood");
inline constexpr const Setting* kSettings[] = {&kClopperPearson, &kJeffreys, &kProfileLikelihood};
inline constexpr const FlagKey* kAskedBy[] = {&kClopperPearson, &kJeffreys, &kProfileLikelihood};

inline constexpr Hypothesis kHypotheses[] = {
    {"ACutPoint", "Estimated: the proportion of records with {0} at most {figure 1}."},
    {kNone, "Estimated: the proportion of records with {0} {categories 1}."}};

inline constexpr TwoClassCodes kClassCodes{221500, 221511};
inline constexpr auto kCodes = Together(kClassCodes);

/// Comes with the binomial test of the same field, which says its classes.
inline constexpr Card kCard{.name = "confidence-interval",
                            .key = "OBinomial",
                            .entry = "OEstimateConfidenceInterval",
                            .element = "OEstimateConfidenceInterval",
                            .family = Family::OneSample,
                            .purpose = Purpose::Estimate,
                            .title = "Confidence interval of a proportion",
                            .hypotheses = kHypotheses,
                            .fields = options::kEachField,
                            .askedBy = kAskedBy,
                            .settings = kSettings,
                            .categoricalSettings = settings::kCategories,
                            .continuousSettings = settings::kCutPoint,
                            .options = kNone,
                            .decision = options::kNothingDecides,
                            .effectSize = options::kNoEffectSize,
                            .page = "confidence_interval.md",
                            .codes = kCodes};

}  // namespace catalogue::confidence_interval
