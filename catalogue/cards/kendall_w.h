#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/sentences.h"
#include "catalogue/settings.h"

namespace catalogue::kendall_w {

inline constexpr const Setting* kSettings[] = {&settings::kNeededComparison};

inline constexpr Hypothesis kHypotheses[] = {
    {kNone, "The records do not agree in how they order {0}."}};

inline constexpr Code kNoComparison{221901, Kind::Error, sentences::kNoComparisonNamed};
inline constexpr Code kUnknownVariable{221903, Kind::Error, sentences::kUnknownField,
                                       Meaning::Name};
inline constexpr Code kNotContinuous{221904, Kind::Error, sentences::kNotContinuous,
                                     Meaning::Field};
inline constexpr Code kTooFewVariables{221909, Kind::Error, sentences::kTooFewFields};
inline constexpr Code kNoVariableName{221911, Kind::Error, sentences::kNoFieldNamed};
inline constexpr Code kNotSignificantPairwise{221913, Kind::Warning,
                                              sentences::kPairwiseNotSignificant};
inline constexpr Code kNotSignificantStepwise{221914, Kind::Warning,
                                              sentences::kStepwiseNotSignificant};
inline constexpr Code kTooFewPairwise{221915, Kind::Warning, sentences::kPairwiseTooFew};
inline constexpr Code kTooFewStepwise{221916, Kind::Warning, sentences::kStepwiseTooFew};
inline constexpr Code kCodes[] = {
    kNoComparison,           kUnknownVariable, kNotContinuous,
    kTooFewVariables,        kNoVariableName,  kNotSignificantPairwise,
    kNotSignificantStepwise, kTooFewPairwise,  kTooFewStepwise};

inline constexpr Card kCard{.name = "kendall-w",
                            .key = "RKendallsCoefficient",
                            .entry = "RKendallsCoefficient",
                            .element = "RKendallsCoefficient",
                            .family = Family::Related,
                            .purpose = Purpose::HypothesisTest,
                            .title = "Kendall's coefficient of concordance",
                            .hypotheses = kHypotheses,
                            .fields = options::kSeveralContinuous,
                            .warningName = "KendallsCoefficient",
                            .settings = kSettings,
                            .options = options::kComparisonOnly,
                            .decision = options::kExactDecides,
                            .effectSize = options::KendallsW(EffectFormula::GivenConcordance),
                            .page = "kendall_w.md",
                            .codes = kCodes};

}  // namespace catalogue::kendall_w
