#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "host/requirements/record_view.h"

/// What generated records are like: continuous fields "x0", "x1", ..., about normal, then "group"
/// and "weight" where they are asked for.
struct DataShape {
  std::size_t records = 0;
  std::size_t fields = 1;
  std::size_t groups = 0;   ///< categories of "group"; 0: there is no such field
  bool isCoarse = false;    ///< each field takes about a hundred values, else hardly one twice
  bool hasMissing = false;  ///< one value in twenty is missing
  bool hasWeight = false;   ///< frequency weights from 1 to 5
};

/// Fields in the memory of a host, with the data model that it hands over beside them.
struct GeneratedData {
  std::vector<std::vector<double>> columns;
  std::string modelText;

  [[nodiscard]] std::size_t Records() const { return columns.front().size(); }
  /// As a host hands them over; not longer than this lives.
  [[nodiscard]] npar_host::RecordView View() const;
};

/// The same records for the same shape, on every machine.
[[nodiscard]] GeneratedData Generate(const DataShape& shape);
