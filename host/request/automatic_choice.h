#pragma once

#include <string>
#include <vector>

#include "host/request/analysis_documents.h"
#include "host/request/category_checks.h"

namespace npar_host {

/// The tests that the component chooses where none is asked for, for people.
inline constexpr const char* kAutomaticChoice =
    R"(Without a test of its own a family gets, by the measurement level of its fields,
  --one-sample   binomial for a categorical field of two categories, chi-square for one of
                 more, ks-normal for a continuous field
  --related      wilcoxon-pairs for two continuous fields, friedman for more; mcnemar for two
                 categorical fields with the same two categories, cochran-q for more
  --independent  mann-whitney for two groups, kruskal-wallis for more
with pairwise comparisons where a test has them.
)";

/// A test that the component chooses: "wilcoxon-pairs", "--related names 2 continuous fields".
struct Choice {
  std::string test;
  std::string because;
};
[[nodiscard]] std::vector<Choice> ExplainChoice(const AnalysisRequest& request,
                                                const ContentOf& contentOf);

}  // namespace npar_host
