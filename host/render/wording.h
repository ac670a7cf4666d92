#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/render/result_model.h"

namespace npar_host {

/// Words for what a result document holds, the same in every rendering. Texts from the data are
/// taken as they are; a rendering escapes them.

/// What a statistician calls the test of that "Algorithm" element or entry.
[[nodiscard]] std::string TestTitle(std::string_view name);
/// The same, also telling apart tests whose elements have one name.
[[nodiscard]] std::string TestTitle(const ResultTest& test);
/// The null hypothesis as a sentence; for an estimate, what is estimated.
[[nodiscard]] std::string Hypothesis(const ResultDocument& document, const ResultTest& test);
/// The decision as a sentence; empty for an estimate.
[[nodiscard]] std::string DecisionText(const ResultDocument& document, const ResultTest& test);
/// The usual name of a figure: "Standardised test statistic" for "StandardTestStatistic"; in a
/// group of figures it may have another.
[[nodiscard]] std::string FigureLabel(std::string_view name, std::string_view group = {});
/// The usual name of a table, of its rows and columns, where they are keys of the document.
[[nodiscard]] std::string TableLabel(std::string_view name);

/// Titles of the fields that the condition names in parameter `position`.
[[nodiscard]] std::vector<std::string> FieldTitles(const ResultDocument& document,
                                                   const ResultTest& test, std::size_t position);
/// "a, b and c"; "(unknown field)" for none.
[[nodiscard]] std::string FieldPhrase(const std::vector<std::string>& titles);
/// The categories that count as success in Cochran's and McNemar's tests: "yes or maybe"; empty for
/// other tests, and where neither the document nor the run tells.
[[nodiscard]] std::string SuccessPhrase(const ResultDocument& document, const ResultTest& test);
/// The first class of a binomial test or its interval: "yes or maybe", "values at most 2.5"; empty
/// for other tests.
[[nodiscard]] std::string FirstClassPhrase(const ResultDocument& document, const ResultTest& test);
/// The field that divides the records of an independent-samples test into groups, or null.
[[nodiscard]] const ResultField* GroupField(const ResultDocument& document, const ResultTest& test);
/// A category's label, or else its value, or else "(unknown)".
[[nodiscard]] std::string CategoryTitle(const ResultField& field, std::int32_t code);
/// "A or B": the categories of a list of codes, as conditions and details hold them.
[[nodiscard]] std::string CategoriesPhrase(const ResultField& field, const std::string& codes);
/// What the comparisons' positions stand for: categories of the group field, or fields.
[[nodiscard]] std::string SampleTitle(const ResultDocument& document, const ResultTest& test,
                                      std::int32_t code);
[[nodiscard]] std::vector<std::string> SampleTitles(const ResultDocument& document,
                                                    const ResultTest& test,
                                                    const std::vector<std::int32_t>& codes);

/// A figure with 6 significant digits, or all before the point, whole numbers as such; another text
/// as it is, "" for the missing value.
[[nodiscard]] std::string FigureText(std::string_view text);
/// With that many decimals: "0.50".
[[nodiscard]] std::string FixedText(double number, int decimals);
/// "95 %".
[[nodiscard]] std::string PercentText(double share);

}  // namespace npar_host
