#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/sentences.h"
#include "catalogue/settings.h"

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

inline constexpr Code kUnknownVariable{221503, Kind::Error, sentences::kUnknownField,
                                       Meaning::Name};
inline constexpr Code kUnknownMeasure{221504, Kind::Error, sentences::kUnknownMeasure,
                                      Meaning::Field};
inline constexpr Code kNoCategoryList{221511, Kind::Error, sentences::kNoCategoryList};
inline constexpr Code kNoCutPoint{221512, Kind::Error, sentences::kNoCutPoint};
inline constexpr Code kNoVariableName{221513, Kind::Error, sentences::kNoFieldNamed};
inline constexpr Code kCutPointWanted{221514, Kind::Error, sentences::kCutPointWanted,
                                      Meaning::Field};
inline constexpr Code kCategoriesWanted{221515, Kind::Error, sentences::kCategoriesWanted,
                                        Meaning::Field};
inline constexpr Code kCodes[] = {kUnknownVariable, kUnknownMeasure, kNoCategoryList,  kNoCutPoint,
                                  kNoVariableName,  kCutPointWanted, kCategoriesWanted};

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
