#pragma once

#include <cstddef>
#include <cstdint>

#include "foundation/double_double.h"
#include "foundation/names.h"

/// Weighted mean and deviation of a column. Right to the 15 digits that documents show, so that
/// neither the order of the values nor how they are grouped into weights changes any; a mean below
/// 2^-20 of the spread may lose the last of them.
///
/// Sums of x - c and (x - c)^2 about the first chunk's centre c, in double-double; the centre lies
/// among the values, and so the sums cancel no more than their count (P. A. Samuelson, J. Amer.
/// Stat. Assoc. 63, 1968). Within a chunk the values are cut at a grid so coarse that sums of
/// what is above it are whole numbers, exact; what is below is less than 2^-20 of the spread
/// (S. M. Rump, T. Ogita, S. Oishi, SIAM J. Sci. Comput. 31, 2008: extraction of high-order parts).
class Moments {
 public:
  /// So many values are taken at once at the most.
  static constexpr std::size_t kChunk = 1024;
  struct Range {
    double least;
    double greatest;
  };

  /// Takes up to kChunk values, at least one, with their weights; null: each weighs 1. None weighs
  /// 0. Answers their range; of equal ends the first.
  Range Add(const double* values, const std::int32_t* weights, std::size_t count) noexcept;
  /// Takes the values of another.
  void Append(const Moments& other) noexcept;

  /// 0 without weight; infinite or not a number where a value, or the sum of such values, is.
  [[nodiscard]] double Mean() const noexcept;
  /// 0 up to a weight of 1; infinite where squares overflow, not a number with infinite values.
  [[nodiscard]] double StdDev() const noexcept;

  /// Can these be of values that weigh so much, above 0, or of none?
  [[nodiscard]] bool CanBeOf(std::int64_t weight) const noexcept {
    return (totalWeight == weight || totalWeight == 0) && 0 <= weightOnGrid &&
           weightOnGrid <= totalWeight;
  }
  /// Shows every sum to `see`, which may change it: how moments are written and read.
  template <typename See>
  void Visit(See& see) {
    see(totalWeight);
    see(weightOnGrid);
    for (double* sum : {&centre, &sumAboutCentre.high, &sumAboutCentre.low,
                        &squaresAboutCentre.high, &squaresAboutCentre.low, &hugeSum}) {
      see(*sum);
    }
    auto huge = static_cast<std::int64_t>(hasHuge);
    see(huge);
    hasHuge = huge != 0;
  }

 private:
  template <bool kIsWeighted>
  Range AddChunk(const double* values, const std::int32_t* weights, std::size_t count) noexcept;
  void AddHuge(const double* values, const std::int32_t* weights, std::size_t count) noexcept;
  /// Sums about a centre of their own.
  void Merge(double chunkCentre, std::int64_t weight, DoubleDouble sum,
             DoubleDouble squares) noexcept;

  std::int64_t totalWeight = 0;
  std::int64_t weightOnGrid = 0;  // of the values that are not huge
  double centre = 0.0;
  DoubleDouble sumAboutCentre;
  DoubleDouble squaresAboutCentre;
  double hugeSum = 0.0;  // in units of kHugeUnit
  bool hasHuge = false;
};

/// The least and the greatest of some values; the missing value before the first.
struct Extremes {
  double minimum = QDMV::gMissingValue;
  double maximum = QDMV::gMissingValue;

  void Take(double x) noexcept {
    if (minimum == QDMV::gMissingValue || minimum > x) minimum = x;
    if (maximum == QDMV::gMissingValue || x > maximum) maximum = x;
  }
};
