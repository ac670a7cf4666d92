#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/render/json_writer.h"
#include "host/render/result_model.h"

namespace npar_host {

/// "TotalN" is "totalN".
[[nodiscard]] std::string Key(std::string_view name);
/// A whole number is written without a point; null for one that is not finite.
[[nodiscard]] Json Number(double number);
/// Null for an empty one.
[[nodiscard]] Json TextOrNull(const std::string& text);
/// A cell of a table: a number, null for a missing one, a text for what is no finite number.
[[nodiscard]] Json Cell(std::string_view text);
/// Such a cell by a key; where it is a text, that stands behind the key with "Text" added, and
/// null.
void AddFigure(Json& object, const std::string& key, std::string_view text);
/// Figures by their names, those of inner tables in objects.
[[nodiscard]] Json Figures(const std::vector<ResultStatistic>& figures);

}  // namespace npar_host
