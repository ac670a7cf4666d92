#include "kit/summaries/univariate_variable.h"

#include <algorithm>
#include <array>
#include <bit>

#include "catalogue/run.h"
#include "kit/records/batch_source.h"
#include "kit/records/record_weight.h"

namespace {

constexpr std::int32_t kFirstStatistic = static_cast<std::int32_t>(Statistic::Mean);
constexpr std::int32_t kLastStatistic = static_cast<std::int32_t>(Statistic::All);

bool IsAnyMissing(const double* values, std::size_t count) noexcept {
  constexpr auto kMissing = std::bit_cast<std::uint64_t>(QDMV::gMissingValue);
  // The upper bit stays set as long as every value differs from the mark: several go at a time.
  std::uint64_t different = ~std::uint64_t{0};
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint64_t bits = std::bit_cast<std::uint64_t>(values[i]) ^ kMissing;
    different &= bits | (0 - bits);
  }
  return different >> 63 == 0;
}

}  // namespace

bool QDUnivariateVariable::AddStatistic(std::int32_t statistic) {
  if (statistic < kFirstStatistic || statistic > kLastStatistic) return false;
  const StatisticSet taken = TakenFor(static_cast<Statistic>(statistic));
  statistics.Insert(taken);
  return !taken.IsEmpty();
}

QDStatus QDUnivariateVariable::ProcessRecord(const Record& record) {
  RowBatch one(record);
  ProcessBatch(one);
  return QDStatus();
}

// Continuous variables.

StatisticSet QDContUnivariateVariable::TakenFor(Statistic statistic) const {
  using enum Statistic;
  switch (statistic) {
    case Mean:
      return {MeanStdDev};
    case Median:
      return {Quartiles};
    case Distribution:
      return {Maximum, Minimum, Distribution};
    case All:
      return {MeanStdDev, Minimum, Maximum, Quartiles, Distribution};
    case Mode:
    case Frequencies:
      return {};
    default:
      return {statistic};
  }
}

void QDContUnivariateVariable::Summarise(RecordBatch& batch) {
  const double* values = batch.Of(variableIndex);
  const std::int32_t* weights = RecordWeight(weightIndex).TruncatedOf(batch);
  const bool wantsMoments = Wants(Statistic::MeanStdDev);
  Extremes taken = extremes;  // kept in registers
  std::int64_t seen = 0;
  std::array<double, Moments::kChunk> chunk;
  std::array<std::int32_t, Moments::kChunk> weightsOfChunk;
  for (std::size_t begin = 0; begin < batch.Size(); begin += Moments::kChunk) {
    const std::size_t end = std::min(begin + Moments::kChunk, batch.Size());
    if (weights == nullptr && wantsMoments && !IsAnyMissing(values + begin, end - begin)) {
      const auto [least, greatest] = moments.Add(values + begin, nullptr, end - begin);
      seen += static_cast<std::int64_t>(end - begin);
      if (least == least) {
        taken.Take(least);
        taken.Take(greatest);
      } else {  // the first one is no number
        std::for_each(values + begin, values + end, [&taken](double x) { taken.Take(x); });
      }
      continue;
    }
    std::size_t size = 0;
    for (std::size_t i = begin; i < end; ++i) {
      const double x = values[i];
      if (x == QDMV::gMissingValue) continue;
      taken.Take(x);
      if (weights == nullptr) {
        chunk[size++] = x;
        continue;
      }
      seen += weights[i];
      chunk[size] = x;
      weightsOfChunk[size] = weights[i];
      size += weights[i] == 0 ? 0 : 1;
    }
    if (weights == nullptr) seen += static_cast<std::int64_t>(size);
    if (!wantsMoments || size == 0) continue;
    moments.Add(chunk.data(), weights == nullptr ? nullptr : weightsOfChunk.data(), size);
  }
  if (Wants(Statistic::Minimum)) extremes.minimum = taken.minimum;
  if (Wants(Statistic::Maximum)) extremes.maximum = taken.maximum;
  totalWeight += seen;
}

void QDContUnivariateVariable::ProcessBatch(RecordBatch& batch) {
  if (pass == 1) {
    Summarise(batch);
    return;
  }
  histogram.AddColumnWithMissing(batch.Of(variableIndex), batch.Size(),
                                 RecordWeight(weightIndex).TruncatedOf(batch));
}

QDStatus QDContUnivariateVariable::EndPass() {
  if (pass != 1) {
    histogram.AddZeroBin();
    needsPass = false;
    return QDStatus();
  }
  if (Wants(Statistic::Quartiles)) {
    const QDStatus walked = WalkSortedValues();
    if (!walked.IsOK()) return walked;
  }
  if (Wants(Statistic::Distribution)) {
    pass = 2;
    histogram.SetRange(extremes.minimum, extremes.maximum);
  } else {
    needsPass = false;
  }
  return QDStatus();
}

QDStatus QDContUnivariateVariable::WalkSortedValues() {
  const auto cells =
      counted == nullptr ? nullptr : counted->WalkCells({&variableIndex, 1}, variableIndex);
  BatchSource* sorted = cells.get();
  if (sorted == nullptr && sortedData != nullptr) {
    sorted = sortedData->GetSortedIterator(variableIndex);
  }
  if (sorted == nullptr) return QDStatus(catalogue::run::kNoSortedData);
  hinges = HingeWalk(static_cast<double>(totalWeight));
  ForEachBatch(*sorted, [this](RecordBatch& batch) {
    const double* values = batch.Of(variableIndex);
    RecordWeight(weightIndex).UsePlain(batch, [&](auto weightAt) {
      for (std::size_t i = 0; i < batch.Size(); ++i) {
        const double weight = weightAt(i);
        if (values[i] == QDMV::gMissingValue || weight == QDMV::gMissingValue) continue;
        hinges.TrackHinges(values[i], weight);
      }
    });
  });
  hinges.FinishHinges();
  if (hinges.Minimum() != QDMV::gMissingValue) {
    extremes.Take(hinges.Minimum());
    extremes.Take(hinges.Maximum());
  }
  return QDStatus();
}

// Categorical variables.

QDCateUnivariateVariable::QDCateUnivariateVariable(std::int32_t variableIndex,
                                                   std::int32_t weightIndex,
                                                   std::int32_t categoryCount)
    : QDUnivariateVariable(variableIndex, weightIndex),
      categoryCount(categoryCount),
      frequencies(static_cast<std::size_t>(std::max(categoryCount, 0))) {}

StatisticSet QDCateUnivariateVariable::TakenFor(Statistic statistic) const {
  using enum Statistic;
  switch (statistic) {
    case Median:
    case Mode:
    case Frequencies:
      return {statistic};
    case All:
      return {Frequencies, Median, Mode};
    default:
      return {};
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

QDStatus QDCateUnivariateVariable::EndPass() {
  needsPass = false;
  if (frequencies.empty()) return QDStatus();
  if (Wants(Statistic::Mode)) {
    largestFrequency = *std::max_element(frequencies.begin(), frequencies.end());
  }
  if (Wants(Statistic::Median)) {
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
