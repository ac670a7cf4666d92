#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/sentences.h"

namespace catalogue::wilcoxon {

inline constexpr FlagKey kValueIsGiven =
    Flag("userSpecifyTestValue",
         "whether `testValue` is the hypothesised median; otherwise it is the median of the data");
inline constexpr NumberKey kTestValue =
    Number("testValue", kAnyNumber, "has to be given with `userSpecifyTestValue`",
           "the hypothesised median", "0.5");
inline constexpr const Setting* kSettings[] = {&kValueIsGiven, &kTestValue};

inline constexpr Option kOptions[] = {
    NumberOption("median", kTestValue, {kValueIsGiven, "true"}, {kValueIsGiven, "false"},
                 "the median of the data", "the hypothesised median")};

inline constexpr Hypothesis kHypotheses[] = {{kNone, "The median of {0} is {figure 1}."}};

inline constexpr Code kNoTestValue{220801, Kind::Error,
                                   "the hypothesised median is to be given, and is not",
                                   "Give the median as a number."};
inline constexpr Code kUnknownVariable{220803, Kind::Error, sentences::kUnknownField,
                                       Meaning::Name};
inline constexpr Code kNoVariableName{220812, Kind::Error, sentences::kNoFieldNamed};
inline constexpr Code kNotContinuous{220815, Kind::Error, sentences::kNotContinuous,
                                     Meaning::Field};
inline constexpr Code kCodes[] = {kNoTestValue, kUnknownVariable, kNoVariableName, kNotContinuous};

inline constexpr Card kCard{.name = "wilcoxon",
                            .key = "OWilcoxonSignedRanks",
                            .entry = "OWilcoxonSignedRanks",
                            .element = "OWilcoxonSignedRanks",
                            .family = Family::OneSample,
                            .purpose = Purpose::HypothesisTest,
                            .title = "Wilcoxon signed-rank test of a median",
                            .hypotheses = kHypotheses,
                            .fields = options::kEachContinuous,
                            .warningName = "WilcoxonSignedRanks",
                            .settings = kSettings,
                            .options = kOptions,
                            .decision = options::kExactDecides,
                            .effectSize = options::RankBiserial(EffectFormula::SignedRanks),
                            .page = "wilcoxon.md",
                            .codes = kCodes};

}  // namespace catalogue::wilcoxon
