#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/sentences.h"
#include "catalogue/settings.h"

namespace catalogue::friedman {

inline constexpr const Setting* kSettings[] = {&settings::kNeededComparison};

inline constexpr Hypothesis kHypotheses[] = {{kNone, "The distributions of {0} are the same."}};

inline constexpr Code kNoComparison{221801, Kind::Error, sentences::kNoComparisonNamed};
inline constexpr Code kUnknownVariable{221803, Kind::Error, sentences::kUnknownField,
                                       Meaning::Name};
inline constexpr Code kNotContinuous{221804, Kind::Error, sentences::kNotContinuous,
                                     Meaning::Field};
inline constexpr Code kTooFewVariables{221809, Kind::Error, sentences::kTooFewFields};
inline constexpr Code kNoVariableName{221811, Kind::Error, sentences::kNoFieldNamed};
inline constexpr Code kNotSignificantPairwise{221813, Kind::Warning,
                                              sentences::kPairwiseNotSignificant};
inline constexpr Code kNotSignificantStepwise{221814, Kind::Warning,
                                              sentences::kStepwiseNotSignificant};
inline constexpr Code kTooFewPairwise{221815, Kind::Warning, sentences::kPairwiseTooFew};
inline constexpr Code kTooFewStepwise{221816, Kind::Warning, sentences::kStepwiseTooFew};
inline constexpr Code kCodes[] = {
    kNoComparison,           kUnknownVariable, kNotContinuous,
    kTooFewVariables,        kNoVariableName,  kNotSignificantPairwise,
    kNotSignificantStepwise, kTooFewPairwise,  kTooFewStepwise};

inline constexpr Card kCard{.name = "friedman",
                            .key = "RFriedmansTwoWayByRanks",
                            .entry = "RFriedmansTwoWayByRanks",
                            .element = "RFriedmansTwoWayByRanks",
                            .family = Family::Related,
                            .purpose = Purpose::HypothesisTest,
                            .title = "Friedman's two-way analysis of variance by ranks",
                            .hypotheses = kHypotheses,
                            .fields = options::kSeveralContinuous,
                            .warningName = "FriedmansTwoWayByRanks",
                            .settings = kSettings,
                            .options = options::kComparisonOnly,
                            .decision = options::kExactDecides,
                            .effectSize = options::KendallsW(EffectFormula::Concordance),
                            .page = "friedman.md",
                            .codes = kCodes};

}  // namespace catalogue::friedman
