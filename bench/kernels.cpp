// The pieces that a run's time is made of, each alone, on a million generated values.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "bench/generated_data.h"
#include "host/data/csv.h"
#include "kit/order_statistics.h"
#include "kit/radix_sort.h"
#include "kit/rank.h"
#include "kit/univariate.h"
#include "planning/record_iterators.h"
#include "planning/sorted_records.h"
#include "report/elements.h"

namespace {

constexpr std::size_t kCount = 1000000;

std::vector<double> Values(bool isCoarse) {
  const GeneratedData data = Generate({.records = kCount, .isCoarse = isCoarse});
  std::vector<double> values(kCount);
  for (std::size_t i = 0; i < kCount; ++i) values[i] = data.rows.Row(i)[0];
  return values;
}

std::vector<double> SortedValues(bool isCoarse) {
  std::vector<double> values = Values(isCoarse);
  std::sort(values.begin(), values.end());
  return values;
}

/// The host's records as a source of the component.
class Source final : public MultiPassRecordIter {
 public:
  explicit Source(const npar_host::RowStore& rows)
      : rows(rows), record(Record::View(nullptr, static_cast<int>(rows.Width()))) {}
  bool HasNext() override { return next < rows.Size(); }
  const Record* Next() override {
    record.LookAt(rows.Row(next++));
    return &record;
  }
  int GetState() const override { return next < rows.Size() ? 0 : 1; }
  int Reset() override {
    next = 0;
    return GetState();
  }

 private:
  const npar_host::RowStore& rows;
  Record record;
  std::size_t next = 0;
};

void CountItems(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kCount));
}

void RadixSort(benchmark::State& state) {
  const std::vector<double> values = Values(state.range(0) != 0);
  for (auto _ : state) {
    const RecordOrder order =
        AscendingOrder(values.size(), [&values](std::size_t place) { return values[place]; });
    benchmark::DoNotOptimize(order.begin());
  }
  CountItems(state);
}
BENCHMARK(RadixSort)->ArgName("coarse")->Arg(0)->Arg(1);

void Ranking(benchmark::State& state) {
  const std::vector<double> values = SortedValues(state.range(0) != 0);
  for (auto _ : state) {
    NPARRank ranks;
    for (std::size_t i = 0; i < values.size(); ++i) {
      static_cast<void>(ranks.AddValue(values[i], 1.0, static_cast<double>(i * 7 % 2)));
    }
    ranks.CloseRun();
    benchmark::DoNotOptimize(ranks.TieSum());
  }
  CountItems(state);
}
BENCHMARK(Ranking)->ArgName("coarse")->Arg(0)->Arg(1);

void SortedWalk(benchmark::State& state) {
  const GeneratedData data = Generate({.records = kCount, .groups = 2});
  QDVarList variables;
  Source source(data.rows);
  InitialDataReader reader(InitialDataReader::kBlockSize, &source, false, {}, &variables);
  if (!reader.Read().IsOK()) state.SkipWithError("the records cannot be read");
  NPARSortManager manager(&reader);
  static_cast<void>(manager.AddSortVariable(0));
  auto* sorted = dynamic_cast<NPARSortedIterator*>(manager.GetSortedIterator(0));
  for (auto _ : state) {
    static_cast<void>(sorted->Reset());
    double sum = 0.0;
    for (RecordBlock block; sorted->NextBlock(block);) {
      for (std::size_t i = 0; i < block.count; ++i) sum += block.rows[i][0];
    }
    benchmark::DoNotOptimize(sum);
  }
  CountItems(state);
}
BENCHMARK(SortedWalk);

void MissingScan(benchmark::State& state) {
  const GeneratedData data = Generate({.records = kCount, .fields = 2, .hasMissing = true});
  const std::vector<MissingMark> marks{{0, QDMV::gMissingValue}, {1, QDMV::gMissingValue}};
  for (auto _ : state) {
    std::size_t complete = 0;
    for (std::size_t i = 0; i < kCount; ++i)
      complete += IsAnyMissing(data.rows.Row(i), marks) ? 0 : 1;
    benchmark::DoNotOptimize(complete);
  }
  CountItems(state);
}
BENCHMARK(MissingScan);

void Histogram(benchmark::State& state) {
  const std::vector<double> values = Values(false);
  for (auto _ : state) {
    QDContUnivariateVariable histogram;
    histogram.SetRange(-3.5, 3.5, QDContUnivariateVariable::kBinCount);
    for (const double value : values) histogram.AddValueOrZero(value, 1);
    benchmark::DoNotOptimize(histogram.GetBins().data());
  }
  CountItems(state);
}
BENCHMARK(Histogram);

void Hinges(benchmark::State& state) {
  const std::vector<double> values = SortedValues(false);
  for (auto _ : state) {
    QDContUnivariateVariable summary;
    for (const double value : values) summary.TrackHinges(value, 1.0, static_cast<double>(kCount));
    summary.FinishHinges();
    benchmark::DoNotOptimize(summary.GetMedian());
  }
  CountItems(state);
}
BENCHMARK(Hinges);

void WalshMedian(benchmark::State& state) {
  WeightedValues values;
  for (const double value : Values(false)) values.Add(value, 1);
  values.Sort();
  for (auto _ : state) benchmark::DoNotOptimize(WalshAverages(values).Median());
  CountItems(state);
}
BENCHMARK(WalshMedian)->Unit(benchmark::kMillisecond);

/// A file of two columns of numbers, for the life of the program.
class CsvFile {
 public:
  CsvFile() {
    const std::vector<double> values = Values(false);
    std::ofstream file(path);
    file.precision(17);
    file << "a,b\n";
    for (std::size_t i = 0; i + 1 < values.size(); i += 2) {
      file << values[i] << ',' << values[i + 1] << '\n';
    }
  }
  ~CsvFile() { std::remove(path); }
  static constexpr const char* path = "build/bench_kernels.csv";
};

const char* CsvPath() {
  static const CsvFile file;
  return CsvFile::path;
}

void CsvRead(benchmark::State& state) {
  const char* path = CsvPath();
  for (auto _ : state) {
    npar_host::CsvReader reader(path);
    benchmark::DoNotOptimize(
        reader.Read({npar_host::CellReading::Number, npar_host::CellReading::Number}));
  }
  CountItems(state);
}
BENCHMARK(CsvRead)->Unit(benchmark::kMillisecond);

void XmlWrite(benchmark::State& state) {
  constexpr int kRows = 10000;
  for (auto _ : state) {
    const auto algorithm =
        CreateAlgorithm("IMannWhitneyU", "hypothesis_test", "Independent_Samples", "");
    XMLElement* table = AddStructuredTable(*algorithm, "StatisticsResult");
    for (int row = 0; row < kRows; ++row) AddAttributeRow(*table, "Value", 1.0 / (row + 1));
    std::string text;
    algorithm->Write(text, 0, true);
    benchmark::DoNotOptimize(text.data());
  }
  state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(XmlWrite)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
