#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/render/result_model.h"
#include "host/render/text_layout.h"

namespace npar_host {

/// Adds the exact significance that the document lacks, or that counts ties.
void AddExact(TextTable& table, const ResultTest& test);
/// The limits of an effect size, as a row below it; nothing without.
void AddEffectLimits(TextTable& table, const ResultDocument& document, const ResultTest& test);
/// The level that the limits of an estimate attain; nothing without.
void AddAttainedLevel(TextTable& table, const ResultTest& test);

/// The samples of a test whose document has no table of them.
void WriteSamples(TextPage& page, const ResultDocument& document, const ResultTest& test,
                  std::size_t indent);
/// What stands nowhere else, without the figures that only pages have.
void WriteFurtherFigures(TextPage& page, const ResultDocument& document, const ResultTest& test,
                         std::size_t indent);

/// Texts of figures as a report shows them.
[[nodiscard]] std::vector<std::string> FigureTexts(std::vector<std::string> figures);

}  // namespace npar_host
