#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/sentences.h"
#include "catalogue/settings.h"
#include "catalogue/shared_codes.h"

namespace catalogue::cochran_q {

inline constexpr Setting kSuccessCategories =
    Other("successCategoryList", Type::Categories,
          "has to be given with `classFormation` `givenCategoryList`",
          "the categories that count as success", "yes|agree");
inline constexpr const Setting* kSettings[] = {&settings::kSuccessFormation, &kSuccessCategories,
                                               &settings::kComparison};
inline constexpr Option kOptions[] = {options::Success(kSuccessCategories), options::kComparison};
inline constexpr Fields kFields{
    kCategorical, 2, kAnyCount, Groups::None,
    "2 or more nominal fields, 2 or more ordinal fields, or both, with the same two categories"};

inline constexpr Hypothesis kHypotheses[] = {
    {kNone, "The proportion of successes is the same in {0}."}};

inline constexpr Code kUnknownVariable{221203, Kind::Error, sentences::kUnknownField,
                                       Meaning::Name};
inline constexpr Code kNoSummaries{221206, Kind::Error, sentences::kNoSummary};
inline constexpr Code kNotTwoCategories{221209, Kind::Error, sentences::kNotTwoValues};
inline constexpr Code kNoSplit{221210, Kind::Error,
                               "the records do not divide into success and failure",
                               "Give success categories that are in the data, and not all of them; "
                               "check for constant fields."};
inline constexpr Code kTooManyValues{221213, Kind::Error, sentences::kTooManyValues};
inline constexpr Code kTooFewVariables{221214, Kind::Error, sentences::kTooFewFields};
inline constexpr Code kNoVariableName{221215, Kind::Error, sentences::kNoFieldNamed};
inline constexpr Code kUnfitVariable{
    221216, Kind::Error, "a field is not categorical, or of another type than the first[: %*]",
    "Choose categorical fields that all hold numbers or all hold texts.", Meaning::Field};
inline constexpr ComparisonCodes kComparisonCodes{{.tooFewPairwise = 221219,
                                                   .tooFewStepwise = 221217,
                                                   .notSignificantPairwise = 221220,
                                                   .notSignificantStepwise = 221218}};
inline constexpr auto kCodes =
    Together(kUnknownVariable, kNoSummaries, kNotTwoCategories, kNoSplit, kTooManyValues,
             kTooFewVariables, kNoVariableName, kUnfitVariable, kComparisonCodes);

inline constexpr Card kCard{.name = "cochran-q",
                            .key = "RCochransQ",
                            .entry = "RCochransQ",
                            .element = "RCochransQ",
                            .family = Family::Related,
                            .purpose = Purpose::HypothesisTest,
                            .title = "Cochran's Q test",
                            .hypotheses = kHypotheses,
                            .fields = kFields,
                            .warningName = "CochransQ",
                            .settings = kSettings,
                            .options = kOptions,
                            .decision = options::kExactDecides,
                            .effectSize = options::kNoEffectSize,
                            .page = "cochran_q.md",
                            .codes = kCodes};

}  // namespace catalogue::cochran_q
