#pragma once

#include <string>
#include <vector>

#include "host/render/result_model.h"

namespace npar_host {

/// A table for a manuscript; the first column names the rows, the others are figures but for those
/// of words.
struct ManuscriptTable {
  std::string caption;
  std::vector<std::string> columns;
  std::vector<std::vector<std::string>> rows;
  std::vector<std::size_t> words = {0};
};

/// All tests, one in a row, with figures as publications print them.
[[nodiscard]] ManuscriptTable TestsTable(const ResultDocument& document);
/// What a test tells of its groups, intervals, frequencies and pairs.
[[nodiscard]] std::vector<ManuscriptTable> TablesOf(const ResultDocument& document,
                                                    const ResultTest& test);

}  // namespace npar_host
