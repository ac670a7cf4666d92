#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "host/render/html/drawing.h"
#include "host/render/result_model.h"

namespace npar_host {

/// Marks of the data themselves. All are empty where the document has no values, as of many
/// records.

/// The values of the tested field in the groups of these codes.
[[nodiscard]] std::vector<double> GroupValues(const ResultDocument& document,
                                              const ResultTest& test,
                                              const std::vector<std::int32_t>& codes);
/// The values of the field that a one-sample test looks at.
[[nodiscard]] std::vector<double> FieldValues(const ResultDocument& document,
                                              const ResultTest& test);
/// The values of the fields in the records that hold all of them.
[[nodiscard]] std::vector<std::vector<double>> CompleteRecords(
    const ResultDocument& document, const std::vector<std::size_t>& fields);

/// A dot for each value, spread around y by at most that much, so that they can be told apart.
void DrawValues(Drawing& drawing, std::vector<double> values, const Scale& across, double y,
                double spread);

/// Lower quartile, median, upper quartile.
using Quartiles = std::array<double, 3>;
/// Those of a group of the test, by its position, or of a related field.
[[nodiscard]] std::optional<Quartiles> SampleQuartiles(const ResultTest& test,
                                                       std::size_t position);
/// A box from quartile to quartile with its median.
void DrawBox(Drawing& drawing, const Quartiles& quartiles, const Scale& across, double y,
             double half);

}  // namespace npar_host
