#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/names.h"

/// Chooses the test for each field, or group of fields, by measurement level and number of
/// categories:
///   one sample    2 categories binomial, more chi-square; continuous Kolmogorov-Smirnov (normal)
///   related       2 continuous fields Wilcoxon, more Friedman; nominal and ordinal fields with the
///                 same two categories: 2 McNemar, more Cochran's Q
///   independent   2 groups Mann-Whitney, more Kruskal-Wallis
/// Without state: one instance serves all calls.
class NPARAutoSelect {
 public:
  virtual ~NPARAutoSelect() = default;

  /// Appends the entries, each with "algorithmName" and "variableName"; the caller numbers them.
  /// One-sample and independent fields that no test is for go to `unusedFields`. `family` is
  /// "One_Sample", "Related_Samples" or "Independent_Samples"; any other yields nothing.
  void Select(std::vector<std::unique_ptr<QDSettings>>& entries,
              std::vector<std::string>& unusedFields, std::string_view family,
              const QDVarList& variables, const std::vector<std::string>& fields,
              const std::string& groupField) const;
};

inline const NPARAutoSelect gAutoSelect;
