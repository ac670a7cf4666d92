#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/render/result_model.h"

namespace npar_host {

/// Words for the rows, columns and messages of a test, the same in every rendering. As in
/// wording.h, texts from the data are taken as they are; a rendering escapes them.

/// What a row of one of the test's tables stands for: a category, a field or a word.
[[nodiscard]] std::string RowTitle(const ResultDocument& document, const ResultTest& test,
                                   const ResultTable& table, std::size_t row);
/// The same of a table of the extended figures; a field is told by its name.
[[nodiscard]] std::string ExtendedRowTitle(const ResultDocument& document, const ResultTest& test,
                                           const ResultTable& table, std::size_t row);
[[nodiscard]] std::string ColumnTitle(const ResultDocument& document, const ResultTest& test,
                                      const ResultTable& table, std::size_t column);
/// Columns of the table, also of a cross table that does not name its two.
[[nodiscard]] std::size_t ColumnCount(const ResultTable& table);
/// "Frequencies", with the categories that count; for a cross table with the fields in its rows and
/// columns.
[[nodiscard]] std::string TableCaption(const ResultDocument& document, const ResultTest& test,
                                       const ResultTable& table);

/// The samples of a group of records, or the field of a related sample.
[[nodiscard]] std::string GroupTitle(const ResultDocument& document, const ResultTest& test,
                                     const ResultGroup& group);
/// The sample at a position of the comparison; the cell itself where it is no position.
[[nodiscard]] std::string PositionTitle(const ResultDocument& document, const ResultTest& test,
                                        const ResultComparison& comparison, std::string_view cell);

/// Why the test was chosen, as a sentence: "Chosen because sex has 2 groups."
[[nodiscard]] std::string ChoiceWords(const ResultTest& test);

/// "error", "warning" or "note".
[[nodiscard]] std::string MessageKindWord(const ResultMessage& message);
/// The message's text with the titles of the fields and samples that it names.
[[nodiscard]] std::string MessageWords(const ResultDocument& document, const ResultTest& test,
                                       const ResultMessage& message);

/// A test's significance adjusted over all tests, as a cell; empty without.
[[nodiscard]] std::string AdjustedCell(const ResultTest& test);
/// How they are adjusted, as a sentence.
[[nodiscard]] std::string AdjustmentWords(const ResultDocument& document);

/// Where the report comes from, as a sentence.
[[nodiscard]] std::string TraceWords(const ReportTrace& trace);

}  // namespace npar_host
