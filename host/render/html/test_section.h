#pragma once

#include <cstddef>
#include <map>
#include <string>

#include "host/render/result_model.h"

namespace npar_host {

/// The id of the section of the test at that position in the document.
[[nodiscard]] std::string TestSectionId(std::size_t index);
/// The tables of values that plots of a page show, each with the first test that shows it.
using DrawnValues = std::map<std::string, std::size_t>;
/// A test's part of the page: hypothesis, decision, plots, tables and messages. Values that stand
/// in a part before are not listed again.
[[nodiscard]] std::string TestSection(const ResultDocument& document, std::size_t index,
                                      DrawnValues& drawn);
/// The fields' part: a plot and the figures of each field that the tests used. Names that
/// `document` has shortened are told in full as `original` has them.
[[nodiscard]] std::string FieldsSection(const ResultDocument& document,
                                        const ResultDocument& original);

/// The significance that decides, as markup: "p < .001" and how it was computed. For an estimate
/// the estimates with their intervals; a dash where there is nothing.
[[nodiscard]] std::string OutcomeMarkup(const ResultTest& test);
/// The decision in a word or two, with its mark.
[[nodiscard]] std::string DecisionMarkup(const ResultTest& test);

}  // namespace npar_host
