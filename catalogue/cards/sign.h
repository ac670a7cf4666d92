#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/sentences.h"

namespace catalogue::sign {

inline constexpr Hypothesis kHypotheses[] = {
    {kNone, "The median of the differences {1} - {0} is 0."}};

inline constexpr Code kUnknownVariable{220903, Kind::Error, sentences::kUnknownField,
                                       Meaning::Name};
inline constexpr Code kNoVariableName{220912, Kind::Error, sentences::kNoFieldNamed};
inline constexpr Code kNotContinuous{220915, Kind::Error, sentences::kNotContinuous,
                                     Meaning::Field};
inline constexpr Code kExactGiven{220916, Kind::Help, sentences::kExactGiven};
inline constexpr Code kTooManyVariables{220917, Kind::Error,
                                        "more than two fields are named for the sign test",
                                        "Name exactly two different fields."};
inline constexpr Code kNoPair{220918, Kind::Error, sentences::kNotTwoFields};
inline constexpr Code kCodes[] = {kUnknownVariable, kNoVariableName,   kNotContinuous,
                                  kExactGiven,      kTooManyVariables, kNoPair};

inline constexpr Card kCard{.name = "sign",
                            .key = "RSign",
                            .entry = "RSign",
                            .element = "RSign",
                            .family = Family::Related,
                            .purpose = Purpose::HypothesisTest,
                            .title = "Sign test",
                            .hypotheses = kHypotheses,
                            .fields = options::kContinuousPair,
                            .warningName = "Sign",
                            .options = kNone,
                            .decision = options::kExactDecides,
                            .effectSize = options::EffectSizeR(EffectFormula::StandardisedByN),
                            .page = "sign.md",
                            .codes = kCodes};

}  // namespace catalogue::sign
