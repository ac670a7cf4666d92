#pragma once

#include <array>

#include "catalogue/card.h"
#include "catalogue/sentences.h"

namespace catalogue {

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

  Code noGroupValues;
  Code unknownVariable;
  Code noSummaries;
  Code notTwoCategories;
  Code inBothGroups;
  Code groupWithoutData;
  Code noVariable;
  Code noGroup;
  Code notCategorical;
  Code notContinuous;
};

/// These and what else a test reports.
template <typename... Codes>
[[nodiscard]] constexpr std::array<Code, 10 + sizeof...(Codes)> Together(const TwoGroupCodes& codes,
                                                                         const Codes&... others) {
  return {codes.noGroupValues,  codes.unknownVariable,  codes.noSummaries, codes.notTwoCategories,
          codes.inBothGroups,   codes.groupWithoutData, codes.noVariable,  codes.noGroup,
          codes.notCategorical, codes.notContinuous,    others...};
}

}  // namespace catalogue
