#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/sentences.h"
#include "catalogue/settings.h"

namespace catalogue::mcnemar {

inline constexpr Setting kCategories = Other(
    "categoriesList", Type::Categories, "has to be given with `classFormation` `givenCategoryList`",
    "the categories that count as success", "yes|agree");
inline constexpr const Setting* kSettings[] = {&settings::kSuccessFormation, &kCategories};
inline constexpr Option kOptions[] = {options::Success(kCategories)};
inline constexpr Fields kFields{
    kCategorical, 2, 2, Groups::None,
    "exactly 2 nominal fields, exactly 2 ordinal fields, or both, with the same two categories"};

inline constexpr Hypothesis kHypotheses[] = {
    {kNone, "The proportions of the two classes are the same in {0} and {1}."}};

inline constexpr Code kNoVariableName{221603, Kind::Error, sentences::kNoFieldNamed};
inline constexpr Code kDistributionFailed{
    221605, Kind::Error, "the exact probability could not be computed from these counts",
    "Check the weights of the records."};
inline constexpr Code kNoSummaries{221606, Kind::Error, sentences::kNoSummary};
inline constexpr Code kNotTwoCategories{221609, Kind::Error, sentences::kNotTwoValues};
inline constexpr Code kTooManyValues{221610, Kind::Error, sentences::kTooManyValues};
inline constexpr Code kNoGivenValue{221611, Kind::Error, sentences::kNoGivenSuccess};
inline constexpr Code kExactGiven{221612, Kind::Help, sentences::kExactGiven};
inline constexpr Code kUnfitVariable{
    221613, Kind::Error,
    "a field is not in the data, not categorical, or of another type than the first[: %*]",
    "Name two categorical fields that both hold numbers or both hold texts.", Meaning::Field};
inline constexpr Code kNotTwoVariables{221614, Kind::Error, sentences::kNotTwoFields};
inline constexpr Code kCodes[] = {kNoVariableName,   kDistributionFailed, kNoSummaries,
                                  kNotTwoCategories, kTooManyValues,      kNoGivenValue,
                                  kExactGiven,       kUnfitVariable,      kNotTwoVariables};

inline constexpr Card kCard{.name = "mcnemar",
                            .key = "RMcNemar",
                            .entry = "RMcNemar",
                            .element = "RMcNemar",
                            .family = Family::Related,
                            .purpose = Purpose::HypothesisTest,
                            .title = "McNemar's test",
                            .hypotheses = kHypotheses,
                            .fields = kFields,
                            .warningName = "McNemar",
                            .settings = kSettings,
                            .options = kOptions,
                            .decision = options::kAsymptoticDecides,
                            .effectSize = {EffectFormula::ChangedProportion, "Cohen's g", "g"},
                            .page = "mcnemar.md",
                            .codes = kCodes};

}  // namespace catalogue::mcnemar
