#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "kit/summaries/histogram.h"

/// Bins with a count.
inline std::vector<std::pair<std::int64_t, double>> Filled(const std::vector<HistogramBin>& bins) {
  std::vector<std::pair<std::int64_t, double>> filled;
  for (const HistogramBin& bin : bins) {
    if (bin.Count() > 0) filled.emplace_back(bin.Count(), bin.Mean());
  }
  return filled;
}
