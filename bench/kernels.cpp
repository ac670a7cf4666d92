// The pieces that a run's time is made of, each alone, on a million generated values; sorting and
// ranking on ten million, beside the machine's plain radix sort of as many pairs.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <string>
#include <vector>

#include "bench/floor.h"
#include "bench/generated_data.h"
#include "host/data/csv.h"
#include "kit/order/order_statistics.h"
#include "kit/order/radix_sort.h"
#include "kit/ranks/column_ranks.h"
#include "kit/ranks/rank.h"
#include "kit/records/record_batch.h"
#include "kit/statistics/mann_whitney_exact.h"
#include "kit/summaries/hinges.h"
#include "kit/summaries/histogram.h"
#include "planning/record_iterators.h"
#include "planning/sorted_records.h"
#include "report/elements.h"

namespace {

constexpr std::size_t kCount = 1000000;
constexpr std::size_t kSortCount = 10000000;

std::vector<double> Values() { return Generate({.records = kCount}).columns[0]; }

std::vector<double> Sorted(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values;
}

/// The host's records as a source of the component.
class Source final : public MultiPassRecordIter {
 public:
  explicit Source(const GeneratedData& data)
      : data(data),
        values(data.columns.size()),
        record(Record::View(values.data(), static_cast<int>(values.size()))) {}
  bool HasNext() override { return next < data.Records(); }
  const Record* Next() override {
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = data.columns[i][next];
    ++next;
    return &record;
  }
  int GetState() const override { return next < data.Records() ? 0 : 1; }
  int Reset() override {
    next = 0;
    return GetState();
  }

 private:
  const GeneratedData& data;
  std::vector<double> values;
  Record record;
  std::size_t next = 0;
};

void CountItems(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kCount));
}

/// A kernel and the plain radix sort of the first field in turn. The counter "sorts" is the
/// kernel's processor time over that of the sort.
template <class Kernel>
void CompareWithSort(benchmark::State& state, const GeneratedData& data, const Kernel& kernel) {
  std::clock_t spent = 0;
  double sorting = 0.0;
  for (auto _ : state) {
    const std::clock_t start = std::clock();
    kernel();
    spent += std::clock() - start;
    state.PauseTiming();
    sorting += MeasureFloor(data.columns).sort;
    state.ResumeTiming();
  }
  state.counters["sorts"] = static_cast<double>(spent) / CLOCKS_PER_SEC / sorting;
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(data.Records()));
}

GeneratedData DataToSort(const benchmark::State& state) {
  return Generate({.records = kSortCount, .groups = 2, .isCoarse = state.range(0) != 0});
}

void OnDataToSort(benchmark::internal::Benchmark* kernel) {
  kernel->ArgName("coarse")->Arg(0)->Arg(1)->Iterations(5)->Unit(benchmark::kMillisecond);
}

void RadixSort(benchmark::State& state) {
  const GeneratedData data = DataToSort(state);
  const std::vector<double>& values = data.columns[0];
  CompareWithSort(state, data, [&values] {
    const RecordOrder order =
        AscendingOrder(values.size(), [&values](std::size_t place) { return values[place]; });
    benchmark::DoNotOptimize(order.begin());
  });
}
BENCHMARK(RadixSort)->Apply(OnDataToSort);

/// Records of weight 1, as the tests of two and more groups rank them.
void Ranking(benchmark::State& state) {
  const GeneratedData data = DataToSort(state);
  const std::vector<double> values = Sorted(data.columns[0]);
  const std::vector<double>& groups = data.columns[1];
  CompareWithSort(state, data, [&values, &groups] {
    NPARRank ranks;
    ranks.AddUnits(values.data(), groups.data(), values.size());
    ranks.CloseRun();
    benchmark::DoNotOptimize(ranks.TieSum());
  });
}
BENCHMARK(Ranking)->Apply(OnDataToSort);

/// One at a time: records with weights, and the sizes of differences.
void RankingOneByOne(benchmark::State& state) {
  const GeneratedData data = DataToSort(state);
  const std::vector<double> values = Sorted(data.columns[0]);
  const std::vector<double>& groups = data.columns[1];
  CompareWithSort(state, data, [&values, &groups] {
    NPARRank ranks;
    for (std::size_t i = 0; i < values.size(); ++i) {
      static_cast<void>(ranks.AddValue(values[i], 1.0, groups[i]));
    }
    ranks.CloseRun();
    benchmark::DoNotOptimize(ranks.TieSum());
  });
}
BENCHMARK(RankingOneByOne)->Apply(OnDataToSort);

/// Five values among themselves, as Friedman's test ranks its records.
void RankingWithinRecords(benchmark::State& state) {
  constexpr std::size_t kFields = 5;
  const GeneratedData data = DataToSort(state);
  const std::vector<double>& values = data.columns[0];
  CompareWithSort(state, data, [&values] {
    const std::size_t records = values.size() / kFields;
    std::vector<const double*> columns;
    for (std::size_t i = 0; i < kFields; ++i) columns.push_back(values.data() + i * records);
    ColumnRanks ranks(kFields);
    std::int64_t sum = 0;
    for (std::size_t first = 0; first < records; first += ranks.RecordsAtOnce()) {
      ranks.Rank(columns, first, std::min(ranks.RecordsAtOnce(), records - first));
      sum += ranks.StepsOf(0)[0];
    }
    benchmark::DoNotOptimize(sum);
  });
}
BENCHMARK(RankingWithinRecords)->Apply(OnDataToSort);

/// The values and codes of all records in the order of a field.
void SortedWalk(benchmark::State& state) {
  const GeneratedData data = Generate({.records = kCount, .groups = 2});
  QDVarList variables;
  Source source(data);
  IteratorBatches batches(source);
  InitialDataReader reader(&batches, false, {}, &variables);
  if (!reader.Read().IsOK()) state.SkipWithError("the records cannot be read");
  NPARSortManager manager(&reader);
  static_cast<void>(manager.AddSortVariable(0));
  BatchSource* sorted = manager.GetSortedIterator(0);
  for (auto _ : state) {
    double sum = 0.0;
    ForEachBatch(*sorted, [&sum](RecordBatch& batch) {
      const double* values = batch.Of(0);
      const std::int32_t* codes = batch.TruncatedOf(1);
      for (std::size_t i = 0; i < batch.Size(); ++i) sum += values[i] * codes[i];
    });
    benchmark::DoNotOptimize(sum);
  }
  CountItems(state);
}
BENCHMARK(SortedWalk);

void MissingScan(benchmark::State& state) {
  const GeneratedData data = Generate({.records = kCount, .fields = 2, .hasMissing = true});
  const std::vector<MissingMark> marks{{0, QDMV::gMissingValue}, {1, QDMV::gMissingValue}};
  Source source(data);
  IteratorBatches batches(source);
  CompleteRecords complete;
  for (auto _ : state) {
    std::size_t count = 0;
    ForEachBatch(batches,
                 [&](RecordBatch& batch) { count += complete.Select(batch, marks).Size(); });
    benchmark::DoNotOptimize(count);
  }
  CountItems(state);
}
BENCHMARK(MissingScan);

void Histogram(benchmark::State& state) {
  const std::vector<double> values = Values();
  for (auto _ : state) {
    ::Histogram histogram;
    histogram.SetRange(-3.5, 3.5);
    for (const double value : values) histogram.AddValueOrZero(value, 1);
    benchmark::DoNotOptimize(histogram.GetBins().data());
  }
  CountItems(state);
}
BENCHMARK(Histogram);

void Hinges(benchmark::State& state) {
  const std::vector<double> values = Sorted(Values());
  for (auto _ : state) {
    HingeWalk walk(static_cast<double>(kCount));
    for (const double value : values) walk.TrackHinges(value, 1.0);
    walk.FinishHinges();
    benchmark::DoNotOptimize(walk.Median());
  }
  CountItems(state);
}
BENCHMARK(Hinges);

void WalshMedian(benchmark::State& state) {
  WeightedValues values;
  for (const double value : Values()) values.Add(value, 1);
  values.Sort();
  for (auto _ : state) benchmark::DoNotOptimize(WalshAverages(values).Median());
  CountItems(state);
}
BENCHMARK(WalshMedian)->Unit(benchmark::kMillisecond);

void GroupDifferencesMedian(benchmark::State& state) {
  const GeneratedData data = Generate({.records = kCount, .groups = 2});
  WeightedValues samples[2];
  for (std::size_t i = 0; i < kCount; ++i) {
    samples[data.columns[1][i] == 0.0 ? 0 : 1].Add(data.columns[0][i], 1);
  }
  for (WeightedValues& sample : samples) sample.Sort();
  for (auto _ : state) benchmark::DoNotOptimize(GroupDifferences(samples[0], samples[1]).Median());
  CountItems(state);
}
BENCHMARK(GroupDifferencesMedian)->Unit(benchmark::kMillisecond);

/// A file of two columns of numbers, for the life of the program.
class CsvFile {
 public:
  CsvFile() {
    const std::vector<double> values = Values();
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

/// Two groups of so many units each, about half of them tied with another.
void ExactMannWhitneyWithTies(benchmark::State& state) {
  const std::int64_t units = state.range(0);
  std::vector<TiedUnits> runs;
  TiedUnits all;
  for (std::uint32_t i = 0; all.first < units || all.second < units; ++i) {
    TiedUnits run;
    for (std::uint32_t k = 0; k < 1 + i % 3; ++k) {
      const bool takesFirst = all.second == units || (i * 2654435761U + k) % 7 < 4;
      if (takesFirst && all.first < units) {
        ++run.first;
        ++all.first;
      } else if (all.second < units) {
        ++run.second;
        ++all.second;
      }
    }
    runs.push_back(run);
  }
  for (auto _ : state) benchmark::DoNotOptimize(ConditionalMannWhitney(runs));
}
BENCHMARK(ExactMannWhitneyWithTies)->Arg(20)->Arg(50)->Arg(100)->Unit(benchmark::kMillisecond);

void XmlWrite(benchmark::State& state) {
  constexpr int kRows = 10000;
  for (auto _ : state) {
    const auto algorithm =
        CreateAlgorithm("IMannWhitneyU", "hypothesis_test", "Independent_Samples", "");
    XMLElement* table = AddStructuredTable(*algorithm, "StatisticsResult");
    for (int row = 0; row < kRows; ++row) AddAttributeRow(*table, "Value", 1.0 / (row + 1));
    std::string text;
    algorithm->Write(text, true);
    benchmark::DoNotOptimize(text.data());
  }
  state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(XmlWrite)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
