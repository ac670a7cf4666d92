#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "host/data/column_findings.h"
#include "host/data/csv.h"
#include "host/data/dataset.h"

namespace npar_host {

/// What a column holds, for a person who sees the file for the first time.
struct FieldDescription {
  std::string name;
  std::string kind;  ///< "continuous" or "nominal", as npar analyse takes it
  std::string why;   ///< empty where the kind is plain
  ColumnFindings findings;
  std::size_t different = 0;  ///< values
  // Of numbers that are no infinities.
  bool hasRange = false;
  double lowest = 0.0;
  double highest = 0.0;
  std::vector<std::size_t> histogram;  ///< records in classes of equal width
  /// Categories with their records, the most frequent first, up to a hundred; of a continuous field
  /// the values, where they are few enough to be groups.
  std::vector<std::pair<std::string, std::size_t>> categories;
  std::vector<std::string> nearlyEqual;  ///< see NearlyEqualTexts

  [[nodiscard]] bool IsContinuous() const { return kind == "continuous"; }
};

/// The fields in the order of the columns, all of which were read by CellReading::Detect.
[[nodiscard]] std::vector<FieldDescription> DescribeFields(const Dataset& data,
                                                           const CsvReader& reader);

/// Arguments of npar that make sense for the fields, as "analyse data.csv --one-sample x".
[[nodiscard]] std::vector<std::string> SuggestCommands(const std::vector<FieldDescription>& fields,
                                                       const std::string& path);

}  // namespace npar_host
