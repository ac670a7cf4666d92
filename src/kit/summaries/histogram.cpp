#include "kit/summaries/histogram.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "foundation/names.h"
#include "kit/records/record_batch.h"

namespace {

/// In which no sum of doubles and 64-bit weights overflows.
constexpr double kSmallerUnit = 0x1p-128;

}  // namespace

void HistogramBin::AddWeighted(double x, double times) noexcept {
  constexpr double kHuge = 0x1p900;
  constexpr double kHalfOfDigits = 0x1.0000002p27;  // T. J. Dekker, Numer. Math. 18 (1971)
  if (!(std::abs(x) < kHuge)) {
    if (!std::isfinite(x)) return AddHuge(x * times);
    if (unit == 1.0) Shrink();
  }
  // Halves of the digits, so that products are exact.
  const double term = x * unit;
  const double wide = term * kHalfOfDigits;
  const double upper = wide - (wide - term);
  AddTerm(upper * times);
  AddTerm((term - upper) * times);
}

void HistogramBin::AddHuge(double term) noexcept {
  if (!std::isfinite(term) || !std::isfinite(sum)) {
    sum += term;
    return;
  }
  Shrink();
  AddTerm(term * kSmallerUnit);
}

void HistogramBin::Shrink() noexcept {
  unit *= kSmallerUnit;
  sum *= kSmallerUnit;
  rest *= kSmallerUnit;
}

double HistogramBin::Mean() const noexcept {
  if (count == 0) return 0.0;
  const auto n = static_cast<double>(count);
  if (!std::isfinite(sum)) return sum / n;
  return (DoubleDouble::Sum(sum, rest) / n).high / unit;
}

void Histogram::SetRange(double low, double high, std::uint64_t binCount) {
  rangeLow = low;
  binUpperEdges.clear();
  bins.clear();
  latestBin = 0;
  if (binCount == 0) return;
  const double binWidth = (high - low) / static_cast<double>(binCount);
  binsPerUnit = 1.0 / binWidth;
  binUpperEdges.resize(binCount + 1);
  const auto placeCount = static_cast<std::int32_t>(binUpperEdges.size());
  double* edges = binUpperEdges.data();
  for (std::int32_t i = 0; i < placeCount; ++i) edges[i] = low + (i + 1.0) * binWidth;
  const auto aboveZero = std::partition_point(binUpperEdges.begin(), binUpperEdges.end() - 1,
                                              [](double edge) { return !(edge > 0.0); });
  if (low > 0.0 || aboveZero == binUpperEdges.end() - 1) {
    binUpperEdges.pop_back();
  } else {
    // The edge at zero costs a multiple of the width: the step after the one that follows it is two
    // widths wide, so that the edges further up stand where they would have stood without it.
    aboveZero[1] = aboveZero[0];
    aboveZero[0] = 0.0;
  }
  binUpperEdges.back() = high + 1.0;
  bins.resize(binUpperEdges.size());
}

std::int64_t Histogram::FindBin(double x) const {
  const std::int64_t last = LastBin();
  // All edges but the two at zero are rangeLow + (i + 1) bin widths up to rounding, so the guess
  // lands beside the bin and the comparisons settle it. Not a number lands in bin 0.
  return SeekBin(x, GuessBin(x, static_cast<double>(last)), last);
}

template <bool kSkipsMissing, typename WeightAt>
void Histogram::AddValues(const double* values, std::size_t count, WeightAt weightAt) {
  const std::int64_t last = LastBin();
  const auto lastGuess = static_cast<double>(last);
  const std::span<HistogramBin> filled = bins;
  std::int32_t guesses[kRecordsAtOnce];
  for (std::size_t first = 0; first < count; first += kRecordsAtOnce) {
    const std::size_t part = std::min(count - first, kRecordsAtOnce);
    // In a loop of its own, so that the processor takes several at a time.
    for (std::size_t i = 0; i < part; ++i) guesses[i] = GuessBin(values[first + i], lastGuess);
    for (std::size_t i = 0; i < part; ++i) {
      const double x = values[first + i];
      if (kSkipsMissing && x == QDMV::gMissingValue) continue;
      if (x == 0.0) {
        zeroCount += weightAt(first + i);
      } else {
        const auto bin = static_cast<std::size_t>(SeekBin(x, guesses[i], last));
        if (bin < filled.size()) filled[bin].Add(x, weightAt(first + i));
      }
    }
  }
}

template <bool kSkipsMissing>
void Histogram::AddWeighted(const double* values, std::size_t count, const std::int32_t* weights) {
  if (weights == nullptr) {
    AddValues<kSkipsMissing>(values, count, [](std::size_t) { return std::int64_t{1}; });
  } else {
    AddValues<kSkipsMissing>(values, count,
                             [weights](std::size_t i) { return std::int64_t{weights[i]}; });
  }
}

void Histogram::AddColumn(const double* values, std::size_t count, const std::int32_t* weights) {
  AddWeighted<false>(values, count, weights);
}

void Histogram::AddColumnWithMissing(const double* values, std::size_t count,
                                     const std::int32_t* weights) {
  AddWeighted<true>(values, count, weights);
}

void Histogram::AddValue(double x, std::int64_t weight) { AddToBin(FindBin(x), x, weight); }

void Histogram::SeekAscending(double x) {
  const auto bin = static_cast<std::size_t>(latestBin);
  const bool isInLatest = bin > 0 && bin < binUpperEdges.size() && binUpperEdges[bin - 1] < x &&
                          !(binUpperEdges[bin] < x);
  if (!isInLatest) latestBin = FindBin(x);
}

void Histogram::AddAscending(double x, std::int64_t weight) {
  SeekAscending(x);
  AddToBin(latestBin, x, weight);
}

HistogramBin* Histogram::OneBinOf(double least, double greatest) {
  if (bins.empty() || !(least > 0.0 || greatest < 0.0)) return nullptr;
  SeekAscending(least);
  const auto index = static_cast<std::size_t>(latestBin);
  const bool isLast = index + 1 == binUpperEdges.size();
  return isLast || greatest <= binUpperEdges[index] ? &bins[index] : nullptr;
}

void Histogram::AddToBin(std::int64_t bin, double x, std::int64_t weight) {
  const auto index = static_cast<std::size_t>(bin);
  if (index < bins.size()) bins[index].Add(x, weight);
}

void Histogram::AddZeroBin() {
  if (zeroCount > 0) bins.push_back(HistogramBin{zeroCount, 0.0});
}
