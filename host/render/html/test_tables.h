#pragma once

#include <string>

#include "host/render/result_model.h"

namespace npar_host {

/// Tables of a test as markup; each is empty where the test does not have what it shows. `id` is
/// unique in the page and begins the tables' ids.

/// The figures of the test, with its effect size.
[[nodiscard]] std::string FiguresTable(const ResultDocument& document, const ResultTest& test,
                                       const std::string& id);
[[nodiscard]] std::string IntervalsTable(const ResultDocument& document, const ResultTest& test,
                                         const std::string& id);
[[nodiscard]] std::string GroupsTable(const ResultDocument& document, const ResultTest& test,
                                      const std::string& id);
[[nodiscard]] std::string BoxesTable(const ResultDocument& document, const ResultTest& test,
                                     const std::string& id);
/// The samples of a test whose document has no table of them.
[[nodiscard]] std::string SamplesTable(const ResultDocument& document, const ResultTest& test,
                                       const std::string& id);
/// The extended figures that stand nowhere else, folded.
[[nodiscard]] std::string FurtherTable(const ResultDocument& document, const ResultTest& test,
                                       const std::string& id);
/// Frequencies or a cross table.
[[nodiscard]] std::string FrequenciesTable(const ResultDocument& document, const ResultTest& test,
                                           const ResultTable& table, const std::string& id);

}  // namespace npar_host
