#pragma once

#include <string>
#include <vector>

#include "host/render/result_model.h"

namespace npar_host {

/// What a table of a test says, in words: the document names its rows and columns by codes, indices
/// and keys. As many titles as the table has rows and columns.
struct TableTitles {
  std::string table;
  std::vector<std::string> rows;
  std::vector<std::string> columns;
};

[[nodiscard]] TableTitles TitlesOf(const ResultDocument& document, const ResultTest& test,
                                   const ResultTable& table);

/// The sample at a position of a comparison; the cell itself where it is no position.
[[nodiscard]] std::string PositionTitle(const ResultDocument& document, const ResultTest& test,
                                        const ResultComparison& comparison,
                                        const std::string& cell);

/// The titles of a group's categories or fields, joined by commas.
[[nodiscard]] std::string GroupTitle(const ResultDocument& document, const ResultTest& test,
                                     const ResultGroup& group);

/// The text of a test's message, its fields and samples named.
[[nodiscard]] std::string MessageWords(const ResultDocument& document, const ResultTest& test,
                                       const ResultMessage& message);

}  // namespace npar_host
