#pragma once

#include <array>
#include <cstdint>
#include <tuple>

#include "catalogue/card.h"
#include "catalogue/sentences.h"

/// Codes that several tests have alike: a card makes them as one value, and its unit hands that on.
namespace catalogue {

namespace detail {

[[nodiscard]] constexpr std::array<Code, 1> All(const Code& code) { return {code}; }
template <typename SharedCodes>
[[nodiscard]] constexpr auto All(const SharedCodes& codes) {
  static_assert(sizeof(SharedCodes) == sizeof(codes.All()), "All leaves a code out");
  return codes.All();
}

}  // namespace detail

/// The codes of these, of which each is one code or several.
template <typename... Parts>
[[nodiscard]] constexpr auto Together(const Parts&... parts) {
  return std::apply([](const auto&... codes) { return std::array{codes...}; },
                    std::tuple_cat(detail::All(parts)...));
}

/// Errors of a two-group test that numbers them as most do, from its `base` such as 220700.
struct TwoGroupCodes {
  constexpr explicit TwoGroupCodes(std::int32_t base)
      : noGroupValues(base + 1, Kind::Error, sentences::kNoGroupValues),
        unknownVariable(base + 3, Kind::Error, sentences::kUnknownField, Meaning::Name),
        noSummaries(base + 6, Kind::Error, sentences::kNoSummary),
        notTwoCategories(base + 9, Kind::Error, sentences::kNotTwoGroups),
        inBothGroups(base + 10, Kind::Error, sentences::kInBothGroups),
        groupWithoutData(base + 11, Kind::Error, sentences::kGroupWithoutData),
        noVariable(base + 12, Kind::Error, sentences::kNoFieldNamed),
        noGroup(base + 13, Kind::Error, sentences::kNoGroupNamed),
        notCategorical(base + 14, Kind::Error, sentences::kGroupNotCategorical, Meaning::Field),
        notContinuous(base + 15, Kind::Error, sentences::kNotContinuous, Meaning::Field) {}
  [[nodiscard]] constexpr auto All() const {
    return Together(noGroupValues, unknownVariable, noSummaries, notTwoCategories, inBothGroups,
                    groupWithoutData, noVariable, noGroup, notCategorical, notContinuous);
  }

  Code noGroupValues;
  Code unknownVariable;
  Code noSummaries;
  Code notTwoCategories;  ///< default groups of a field without exactly two categories
  Code inBothGroups;
  Code groupWithoutData;  ///< or an empty list
  Code noVariable;
  Code noGroup;
  Code notCategorical;
  Code notContinuous;
};

/// Errors of a test that divides one field into two classes; `list` is the number of the first that
/// has to do with the division.
struct TwoClassCodes {
  constexpr TwoClassCodes(std::int32_t base, std::int32_t list)
      : unknownVariable(base + 3, Kind::Error, sentences::kUnknownField, Meaning::Name),
        unknownMeasure(base + 4, Kind::Error, sentences::kUnknownMeasure, Meaning::Field),
        noCategoryList(list, Kind::Error, sentences::kNoCategoryList),
        noCutPoint(list + 1, Kind::Error, sentences::kNoCutPoint),
        noVariable(list + 2, Kind::Error, sentences::kNoFieldNamed),
        cutPointWanted(list + 3, Kind::Error, sentences::kCutPointWanted, Meaning::Field),
        categoriesWanted(list + 4, Kind::Error, sentences::kCategoriesWanted, Meaning::Field) {}
  [[nodiscard]] constexpr auto All() const {
    return Together(unknownVariable, unknownMeasure, noCategoryList, noCutPoint, noVariable,
                    cutPointWanted, categoriesWanted);
  }

  Code unknownVariable;
  Code unknownMeasure;
  Code noCategoryList;  ///< a list was announced and is missing or empty
  Code noCutPoint;      ///< a cut point was announced and is missing
  Code noVariable;
  Code cutPointWanted;    ///< a continuous field with another formation
  Code categoriesWanted;  ///< a categorical field with a cut point
};

/// Errors of a test that takes two, or two and more, continuous fields.
struct ContinuousFieldsCodes {
  constexpr ContinuousFieldsCodes(std::int32_t base, const Sentence& count, std::int32_t noFields)
      : unknownVariable(base + 3, Kind::Error, sentences::kUnknownField, Meaning::Name),
        notContinuous(base + 4, Kind::Error, sentences::kNotContinuous, Meaning::Field),
        wrongCount(base + 9, Kind::Error, count),
        noVariables(noFields, Kind::Error, sentences::kNoFieldNamed) {}
  [[nodiscard]] constexpr auto All() const {
    return Together(unknownVariable, notContinuous, wrongCount, noVariables);
  }

  Code unknownVariable;
  Code notContinuous;
  Code wrongCount;
  Code noVariables;
};

/// Warnings of a comparison that falls away, which each test numbers in an order of its own.
struct ComparisonCodes {
  struct Numbers {
    std::int32_t tooFewPairwise;
    std::int32_t tooFewStepwise;
    std::int32_t notSignificantPairwise;
    std::int32_t notSignificantStepwise;
  };
  constexpr explicit ComparisonCodes(const Numbers& numbers)
      : tooFewPairwise(numbers.tooFewPairwise, Kind::Warning, sentences::kPairwiseTooFew),
        tooFewStepwise(numbers.tooFewStepwise, Kind::Warning, sentences::kStepwiseTooFew),
        notSignificantPairwise(numbers.notSignificantPairwise, Kind::Warning,
                               sentences::kPairwiseNotSignificant),
        notSignificantStepwise(numbers.notSignificantStepwise, Kind::Warning,
                               sentences::kStepwiseNotSignificant) {}
  [[nodiscard]] constexpr auto All() const {
    return Together(tooFewPairwise, tooFewStepwise, notSignificantPairwise, notSignificantStepwise);
  }

  Code tooFewPairwise;
  Code tooFewStepwise;
  Code notSignificantPairwise;
  Code notSignificantStepwise;
};

/// Of the two tests that rank the fields within each record.
struct RankedRecordsCodes {
  constexpr explicit RankedRecordsCodes(std::int32_t base)
      : noComparison(base + 1, Kind::Error, sentences::kNoComparisonNamed),
        fields(base, sentences::kTooFewFields, base + 11),
        comparison({.tooFewPairwise = base + 15,
                    .tooFewStepwise = base + 16,
                    .notSignificantPairwise = base + 13,
                    .notSignificantStepwise = base + 14}) {}
  [[nodiscard]] constexpr auto All() const { return Together(noComparison, fields, comparison); }

  Code noComparison;  ///< the entry does not say which comparison is wanted
  ContinuousFieldsCodes fields;
  ComparisonCodes comparison;
};

/// Of the tests of several groups in no order.
struct SeveralGroupsCodes {
  constexpr explicit SeveralGroupsCodes(std::int32_t base)
      : unknownVariable(base + 3, Kind::Error, sentences::kUnknownPairOfFields, Meaning::Name),
        notContinuous(base + 9, Kind::Error, sentences::kNotContinuous, Meaning::Field),
        notCategorical(base + 10, Kind::Error, sentences::kGroupNotCategorical, Meaning::Field),
        tooFewGroups(base + 12, Kind::Error, sentences::kTooFewGroups),
        tooFewCategories(base + 15, Kind::Error, sentences::kTooFewCategories),
        comparison({.tooFewPairwise = base + 18,
                    .tooFewStepwise = base + 16,
                    .notSignificantPairwise = base + 19,
                    .notSignificantStepwise = base + 17}) {}
  [[nodiscard]] constexpr auto All() const {
    return Together(unknownVariable, notContinuous, notCategorical, tooFewGroups, tooFewCategories,
                    comparison);
  }

  Code unknownVariable;  ///< or none is named
  Code notContinuous;
  Code notCategorical;
  Code tooFewGroups;  ///< that have data
  Code tooFewCategories;
  ComparisonCodes comparison;
};

}  // namespace catalogue
