#include "kit/summaries/univariate.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "kit/records/record_weight.h"

namespace {

/// Quartiles were asked for and there is no sorted data.
constexpr std::int32_t kNoSortedData = 220005;

constexpr std::int32_t kFirstStatistic = static_cast<std::int32_t>(Statistic::Mean);
constexpr std::int32_t kLastStatistic = static_cast<std::int32_t>(Statistic::All);

}  // namespace

// Continuous variables.

QDContUnivariateVariable::QDContUnivariateVariable(std::int32_t variableIndex,
                                                   std::int32_t weightIndex)
    : variableIndex(variableIndex), weightIndex(weightIndex) {}

bool QDContUnivariateVariable::AddStatistic(std::int32_t statistic) {
  if (statistic < kFirstStatistic || statistic > kLastStatistic) return false;
  const auto add = [this](std::initializer_list<Statistic> list) {
    for (const Statistic item : list) statistics.Insert(item);
  };
  switch (static_cast<Statistic>(statistic)) {
    case Statistic::Mean:
      add({Statistic::MeanStdDev});
      return true;
    case Statistic::Median:
      add({Statistic::Quartiles});
      return true;
    case Statistic::Distribution:
      add({Statistic::Maximum, Statistic::Minimum, Statistic::Distribution});
      return true;
    case Statistic::All:
      add({Statistic::MeanStdDev, Statistic::Minimum, Statistic::Maximum, Statistic::Quartiles,
           Statistic::Distribution});
      return true;
    case Statistic::Mode:
    case Statistic::Frequencies:
      return false;
    default:
      add({static_cast<Statistic>(statistic)});
      return true;
  }
}

void QDContUnivariateVariable::Moments::Add(double x, std::int64_t weight) {
  if (weight == 0) return;
  const double w = static_cast<double>(weight);
  const double earlier = static_cast<double>(weightedCount);
  weightedCount += weight;
  const double total = static_cast<double>(weightedCount);
  const double delta = (x - mean) * w / total;
  mean += delta;
  sumOfSquares += delta * delta * total * earlier / w;
}

void QDContUnivariateVariable::Moments::Add(double x) {
  const double earlier = static_cast<double>(weightedCount);
  ++weightedCount;
  const double total = static_cast<double>(weightedCount);
  const double delta = (x - mean) / total;
  mean += delta;
  sumOfSquares += delta * delta * total * earlier;
}

template <bool kIsWeighted, std::size_t kCount>
void QDContUnivariateVariable::Summarise(QDContUnivariateVariable* const* variables,
                                         RecordBatch& batch) {
  // What changes with every value is kept in registers.
  std::array<const double*, kCount> values;
  std::array<Moments, kCount> moments;
  std::array<double, kCount> lowest;
  std::array<double, kCount> highest;
  std::array<std::int64_t, kCount> seen{};
  for (std::size_t k = 0; k < kCount; ++k) {
    values[k] = batch.Of(variables[k]->variableIndex);
    moments[k] = variables[k]->moments;
    lowest[k] = variables[k]->minimum;
    highest[k] = variables[k]->maximum;
  }
  const double* weights = kIsWeighted ? batch.Of(variables[0]->weightIndex) : nullptr;
  for (std::size_t i = 0; i < batch.Size(); ++i) {
    for (std::size_t k = 0; k < kCount; ++k) {
      const double x = values[k][i];
      if (x == QDMV::gMissingValue) continue;
      if constexpr (kIsWeighted) {
        const std::int64_t weight = TruncateToInt32(weights[i]);
        moments[k].Add(x, weight);
        seen[k] += weight;
      } else {
        moments[k].Add(x);
        ++seen[k];
      }
      if (lowest[k] == QDMV::gMissingValue || lowest[k] > x) lowest[k] = x;
      if (highest[k] == QDMV::gMissingValue || x > highest[k]) highest[k] = x;
    }
  }
  for (std::size_t k = 0; k < kCount; ++k) {
    QDContUnivariateVariable& variable = *variables[k];
    if (variable.Wants(Statistic::Minimum)) variable.minimum = lowest[k];
    if (variable.Wants(Statistic::Maximum)) variable.maximum = highest[k];
    if (variable.Wants(Statistic::MeanStdDev)) variable.moments = moments[k];
    variable.totalWeight += seen[k];
  }
}

void QDContUnivariateVariable::SummariseTogether(
    std::span<QDContUnivariateVariable* const> variables, RecordBatch& batch) {
  constexpr std::size_t kMost = 4;  // so many fit the registers
  while (!variables.empty()) {
    const std::size_t count = std::min(variables.size(), kMost);
    const bool isWeighted = variables.front()->weightIndex >= 0;
    const auto summarise = [&]<std::size_t kCount> {
      isWeighted ? Summarise<true, kCount>(variables.data(), batch)
                 : Summarise<false, kCount>(variables.data(), batch);
    };
    if (count == 1) summarise.template operator()<1>();
    if (count == 2) summarise.template operator()<2>();
    if (count == 3) summarise.template operator()<3>();
    if (count == kMost) summarise.template operator()<kMost>();
    variables = variables.subspan(count);
  }
}

void QDContUnivariateVariable::ProcessBatch(RecordBatch& batch) {
  if (pass == 1) {
    QDContUnivariateVariable* self = this;
    SummariseTogether({&self, 1}, batch);
    return;
  }
  const double* values = batch.Of(variableIndex);
  RecordWeight(weightIndex).UseTruncated(batch, [&](auto weightAt) {
    AddValues<true>(values, batch.Size(), weightAt);
  });
}

QDStatus QDContUnivariateVariable::ProcessRecord(const Record& record) {
  RowBatch one(record);
  ProcessBatch(one);
  return QDStatus();
}

QDStatus QDContUnivariateVariable::EndPass() {
  if (pass != 1) {
    AddZeroBin();
    needsPass = false;
    return QDStatus();
  }
  if (Wants(Statistic::MeanStdDev) && totalWeight > 1) {
    stdDev = std::sqrt(moments.sumOfSquares / static_cast<double>(totalWeight - 1));
  }
  if (Wants(Statistic::Quartiles)) {
    const QDStatus walked = WalkSortedValues();
    if (!walked.IsOK()) return walked;
  }
  if (Wants(Statistic::Distribution)) {
    pass = 2;
    SetRange(minimum, maximum, kBinCount);
  } else {
    needsPass = false;
  }
  return QDStatus();
}

QDStatus QDContUnivariateVariable::WalkSortedValues() {
  BatchSource* sorted =
      sortedData == nullptr ? nullptr : sortedData->GetSortedIterator(variableIndex);
  if (sorted == nullptr) return QDStatus(kNoSortedData);
  ForEachBatch(*sorted, [this](RecordBatch& batch) {
    const double* values = batch.Of(variableIndex);
    const double* weights = weightIndex < 0 ? nullptr : batch.Of(weightIndex);
    for (std::size_t i = 0; i < batch.Size(); ++i) {
      const double weight = weights == nullptr ? 1.0 : weights[i];
      if (values[i] == QDMV::gMissingValue || weight == QDMV::gMissingValue) continue;
      TrackHinges(values[i], weight, static_cast<double>(totalWeight));
    }
  });
  FinishHinges();
  return QDStatus();
}

void QDContUnivariateVariable::SetRange(double low, double high, std::uint64_t wantedBins) {
  rangeLow = low;
  rangeHigh = high;
  binCount = wantedBins;
  binUpperEdges.clear();
  bins.clear();
  latestBin = 0;
  if (wantedBins == 0) return;
  const double binWidth = (high - low) / static_cast<double>(wantedBins);
  binsPerUnit = 1.0 / binWidth;
  binUpperEdges.reserve(wantedBins + 1);
  double previous = low;
  std::uint64_t multiple = 1;
  while (binUpperEdges.size() < binCount) {
    const double edge = low + static_cast<double>(multiple) * binWidth;
    // The edge at zero costs a multiple of the width: the step after the one that follows it is two
    // widths wide, so that the edges further up stand where they would have stood without it.
    if (!(previous > 0.0) && edge > 0.0) {
      binUpperEdges.push_back(0.0);
      ++multiple;
      ++binCount;
    }
    binUpperEdges.push_back(edge);
    previous = edge;
    ++multiple;
  }
  binUpperEdges.back() = high + 1.0;
  bins.resize(binCount);
}

std::int64_t QDContUnivariateVariable::FindBin(double x) const {
  const std::int64_t last = LastBin();
  // All edges but the two at zero are rangeLow + (i + 1) bin widths up to rounding, so the guess
  // lands beside the bin and the comparisons settle it. Not a number lands in bin 0.
  return SeekBin(x, GuessBin(x, static_cast<double>(last)), last);
}

template <bool kSkipsMissing, typename WeightAt>
void QDContUnivariateVariable::AddValues(const double* values, std::size_t count,
                                         WeightAt weightAt) {
  const std::int64_t last = LastBin();
  const auto lastGuess = static_cast<double>(last);
  const std::span<HistogramBin> filled = bins;
  std::int32_t guesses[kRecordsAtOnce];
  for (std::size_t first = 0; first < count; first += kRecordsAtOnce) {
    const std::size_t part = std::min(count - first, kRecordsAtOnce);
    // Apart from the rest, so that the processor takes several at a time.
    for (std::size_t i = 0; i < part; ++i) guesses[i] = GuessBin(values[first + i], lastGuess);
    for (std::size_t i = 0; i < part; ++i) {
      const double x = values[first + i];
      if (kSkipsMissing && x == QDMV::gMissingValue) continue;
      if (x == 0.0) {
        zeroCount += weightAt(first + i);
      } else {
        const auto place = static_cast<std::size_t>(SeekBin(x, guesses[i], last));
        if (place < filled.size()) filled[place].Add(x, weightAt(first + i));
      }
    }
  }
}

void QDContUnivariateVariable::AddColumn(const double* values, std::size_t count,
                                         const std::int32_t* weights) {
  if (weights == nullptr) {
    AddValues<false>(values, count, [](std::size_t) { return std::int64_t{1}; });
  } else {
    AddValues<false>(values, count, [weights](std::size_t i) { return std::int64_t{weights[i]}; });
  }
}

void QDContUnivariateVariable::AddValue(double x, std::int64_t weight) {
  AddToBin(FindBin(x), x, weight);
}

void QDContUnivariateVariable::AddAscending(double x, std::int64_t weight) {
  const auto bin = static_cast<std::size_t>(latestBin);
  const bool isInLatest = bin > 0 && bin < binUpperEdges.size() && binUpperEdges[bin - 1] < x &&
                          !(binUpperEdges[bin] < x);
  if (!isInLatest) latestBin = FindBin(x);
  AddToBin(latestBin, x, weight);
}

void QDContUnivariateVariable::AddToBin(std::int64_t place, double x, std::int64_t weight) {
  const auto index = static_cast<std::size_t>(place);
  if (index < bins.size()) bins[index].Add(x, weight);
}

void QDContUnivariateVariable::AddZeroBin() {
  if (zeroCount > 0) bins.push_back(HistogramBin{zeroCount, 0.0});
}

void QDContUnivariateVariable::StartHinges(double total) {
  hingeTotal = total;
  nextHinge = kNoHinge;
  // Of the outer hinges, from either end; the weight is whole, and the fraction one half or none.
  const double depth = static_cast<double>(TruncateToInt64((total + 3.0) * 0.5)) * 0.5;
  hinges[0].position = depth;
  hinges[1].position = (total + 1.0) * 0.5;
  hinges[2].position = (total + 1.0) - depth;
}

void QDContUnivariateVariable::SettleHinges(double x, double weight) {
  nextHinge = std::numeric_limits<double>::max();
  const double before = cumulativeWeight;
  const bool isFirst = previousValue == QDMV::gMissingValue;
  for (Hinge& hinge : hinges) {
    if (hinge.value != QDMV::gMissingValue) continue;
    const double fraction = hinge.position - before;
    if (isFirst || !(before > hinge.position || before + weight > hinge.position)) {
      nextHinge = std::min(nextHinge, hinge.position);
    } else if (before > hinge.position) {
      hinge.value = previousValue;
    } else {
      hinge.value = fraction >= 1.0 ? x : (1.0 - fraction) * previousValue + fraction * x;
    }
  }
  cumulativeWeight += weight;
  previousValue = x;
}

bool QDContUnivariateVariable::TrackUnits(double count, double lowest, double last,
                                          double totalWeight) noexcept {
  const double reached = cumulativeWeight + count;
  if (totalWeight != hingeTotal || !(reached <= nextHinge)) return false;
  // The walk knows the least value already, and the greatest may be the last; of zeros the first
  // stays, with its sign.
  const bool isRegular = minimum != QDMV::gMissingValue && minimum <= lowest &&
                         maximum != QDMV::gMissingValue && maximum <= last && last != 0.0;
  if (!isRegular) return false;
  cumulativeWeight = reached;
  previousValue = last;
  maximum = last;
  return true;
}

void QDContUnivariateVariable::FinishHinges() {
  for (Hinge& hinge : hinges) {
    if (hinge.value == QDMV::gMissingValue) hinge.value = previousValue;
  }
}

// Categorical variables.

QDCateUnivariateVariable::QDCateUnivariateVariable(std::int32_t variableIndex,
                                                   std::int32_t weightIndex,
                                                   std::int32_t categoryCount)
    : variableIndex(variableIndex),
      weightIndex(weightIndex),
      categoryCount(categoryCount),
      frequencies(static_cast<std::size_t>(std::max(categoryCount, 0))) {}

bool QDCateUnivariateVariable::AddStatistic(std::int32_t statistic) {
  if (statistic < kFirstStatistic || statistic > kLastStatistic) return false;
  switch (static_cast<Statistic>(statistic)) {
    case Statistic::Median:
    case Statistic::Mode:
    case Statistic::Frequencies:
      statistics.Insert(static_cast<Statistic>(statistic));
      return true;
    case Statistic::All:
      for (const Statistic item : {Statistic::Frequencies, Statistic::Median, Statistic::Mode}) {
        statistics.Insert(item);
      }
      return true;
    default:
      return false;
  }
}

void QDCateUnivariateVariable::ProcessBatch(RecordBatch& batch) {
  const std::int32_t* codes = batch.TruncatedOf(variableIndex);
  RecordWeight(weightIndex).UseTruncated(batch, [&](auto weightAt) {
    std::int64_t seen = 0;
    for (std::size_t i = 0; i < batch.Size(); ++i) {
      const std::int64_t weight = weightAt(i);
      if (codes[i] >= 0 && codes[i] < categoryCount) {
        frequencies[static_cast<std::size_t>(codes[i])] += weight;
      } else if (batch.Of(variableIndex)[i] != QDMV::gMissingCategory) {
        otherFrequencies[codes[i]] += weight;
      } else {
        continue;
      }
      seen += weight;
    }
    totalWeight += seen;
  });
}

QDStatus QDCateUnivariateVariable::ProcessRecord(const Record& record) {
  RowBatch one(record);
  ProcessBatch(one);
  return QDStatus();
}

QDStatus QDCateUnivariateVariable::EndPass() {
  needsPass = false;
  if (frequencies.empty()) return QDStatus();
  if (statistics.Contains(Statistic::Mode)) {
    largestFrequency = *std::max_element(frequencies.begin(), frequencies.end());
  }
  if (statistics.Contains(Statistic::Median)) {
    std::int64_t sum = 0;
    for (std::size_t code = 0; code < frequencies.size(); ++code) {
      sum += frequencies[code];
      if (sum < totalWeight / 2) continue;
      medianCategory = static_cast<std::int32_t>(code);
      break;
    }
  }
  return QDStatus();
}

std::map<std::int32_t, std::int64_t> QDCateUnivariateVariable::GetFrequencies() const {
  std::map<std::int32_t, std::int64_t> all = otherFrequencies;
  for (std::size_t code = 0; code < frequencies.size(); ++code) {
    all.emplace_hint(all.end(), static_cast<std::int32_t>(code), frequencies[code]);
  }
  return all;
}
