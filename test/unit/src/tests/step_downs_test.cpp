#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <random>

#include "foundation/math.h"
#include "kit/ranks/record_ranks.h"
#include "kit/statistics/cochran_q.h"
#include "kit/statistics/friedman.h"
#include "kit/statistics/jonckheere.h"
#include "kit/statistics/two_row_table.h"
#include "support/group_run.h"

// The step-downs of many samples against a plain search that computes each range from its records.

namespace {

/// Of the range between two places of the tested order.
using SigOf = std::function<double(std::size_t, std::size_t)>;

/// "first;last" of each homogeneous subset of two samples or more: from each sample on the longest
/// range that is not told apart and stands in no other one.
Texts PlainSubsets(std::size_t count, const SigOf& sigOf) {
  Texts subsets;
  std::size_t coveredUpTo = 0;
  for (std::size_t first = 0; first + 1 < count; ++first) {
    for (std::size_t last = first == 0 ? count - 2 : count - 1; last > first; --last) {
      if (last < coveredUpTo) break;
      const std::size_t size = last - first + 1;
      double sig = sigOf(first, last);
      if (size + 1 < count) {
        sig = 1.0 - std::pow(1.0 - sig, static_cast<double>(count) / static_cast<double>(size));
      }
      if (sig < 0.05) continue;
      subsets.push_back(std::to_string(first) + ';' + std::to_string(last));
      coveredUpTo = last + 1;
      break;
    }
  }
  return subsets;
}

/// The same of a result.
Texts SubsetsOf(const AlgorithmElement& result) {
  Texts subsets;
  for (const std::string& row : result.Rows("StepwiseResult/Content")) {
    const std::string places = row.substr(0, row.find(';', row.find(';') + 1));
    const std::size_t parting = places.find(';');
    if (places.substr(0, parting) != places.substr(parting + 1)) subsets.push_back(places);
  }
  std::ranges::sort(subsets, {}, [](const std::string& places) { return std::stoi(places); });
  return subsets;
}

void ExpectPlainSubsets(const AlgorithmElement& result, std::size_t count,
                        const std::function<SigOf(std::vector<std::size_t>)>& sigFor) {
  std::vector<std::size_t> order;
  std::istringstream indices(result.Rows("StepwiseInfo").front());
  for (std::string index; std::getline(indices, index, ';');) order.push_back(std::stoul(index));
  ASSERT_EQ(order.size(), count);
  const Texts subsets = SubsetsOf(result);
  EXPECT_GT(subsets.size(), 2u) << "the data tell some apart and not others";
  EXPECT_EQ(subsets, PlainSubsets(count, sigFor(order)));
}

Texts Names(std::size_t count) {
  Texts names;
  for (std::size_t i = 0; i < count; ++i) names.push_back("v" + std::to_string(i));
  return names;
}

Samples DriftingSamples(std::size_t count, std::size_t size, double drift) {
  std::mt19937 random(7);
  std::normal_distribution<double> normal;
  Samples samples(count);
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t j = 0; j < size; ++j) {
      // Ties, within samples and between them.
      samples[i].push_back(std::round(8.0 * (normal(random) + drift * static_cast<double>(i))));
    }
  }
  return samples;
}

void ExpectSubsetsByMedians(const Samples& samples, std::optional<double> given) {
  TestSettings entry = ComparedEntry("stepWise");
  if (given) entry.Put("userSpecifyMedian", "true", "median", *given);
  const AlgorithmElement result =
      RunEntry(GroupedVariables(Names(samples.size())), GroupedRows(samples), "IMedian", entry);
  ExpectPlainSubsets(result, samples.size(), [&](std::vector<std::size_t> order) -> SigOf {
    return [&samples, order, given](std::size_t first, std::size_t last) {
      Sample all;
      for (std::size_t p = first; p <= last; ++p) {
        all.insert(all.end(), samples[order[p]].begin(), samples[order[p]].end());
      }
      std::sort(all.begin(), all.end());
      const double median = given.value_or((all[(all.size() - 1) / 2] + all[all.size() / 2]) / 2.0);
      TwoRowTable table;
      for (std::size_t p = first; p <= last; ++p) {
        const Sample& sample = samples[order[p]];
        table.Add(std::ranges::count_if(sample, [&](double x) { return x <= median; }),
                  static_cast<std::int64_t>(sample.size()));
      }
      return table.ChiSquare().sig;
    };
  });
}

TEST(StepDownsTest, MediansOfManyGroups) {
  ExpectSubsetsByMedians(DriftingSamples(90, 9, 0.03), std::nullopt);
  ExpectSubsetsByMedians(DriftingSamples(40, 30, 0.05), 8.0);
}

TEST(StepDownsTest, JonckheereTerpstraOfManyGroups) {
  const Samples samples = DriftingSamples(30, 6, 0.1);
  const AlgorithmElement result =
      RunEntry(GroupedVariables(Names(samples.size()), true), GroupedRows(samples),
               "IJonckheereTerpstra", ComparedEntry("stepWise"));
  ExpectPlainSubsets(result, samples.size(), [&](std::vector<std::size_t> order) -> SigOf {
    return [&samples, order](std::size_t first, std::size_t last) {
      double statistic = 0.0;
      std::map<double, double> ties;
      std::vector<double> sizes;
      for (std::size_t p = first; p <= last; ++p) {
        sizes.push_back(static_cast<double>(samples[order[p]].size()));
        for (const double x : samples[order[p]]) {
          ties[x] += 1.0;
          for (std::size_t q = first; q < p; ++q) {
            for (const double y : samples[order[q]]) statistic += y < x ? 1.0 : y == x ? 0.5 : 0.0;
          }
        }
      }
      double pairs = 0.0;
      double triples = 0.0;
      for (const auto& [x, t] : ties) {
        pairs += t * (t - 1.0);
        triples += t * t * (t - 1.0);
      }
      return QDDistFun::SfStdNorm(JonckheereTerpstra(statistic, pairs, triples, sizes).z);
    };
  });
}

/// Rows of fields and a weight of 1, 2 or 3.
Rows DriftingRows(std::size_t records, std::size_t fields, double drift, bool isBinary) {
  std::mt19937 random(5);
  std::normal_distribution<double> normal;
  Rows rows(records);
  for (std::size_t i = 0; i < records; ++i) {
    for (std::size_t j = 0; j < fields; ++j) {
      const double x = normal(random) + drift * static_cast<double>(j);
      rows[i].push_back(isBinary ? (x > 1.0 ? 0.0 : 1.0) : x);
    }
    rows[i].push_back(static_cast<double>(i % 3 + 1));
  }
  return rows;
}

TEST(StepDownsTest, RanksOfManyFields) {
  constexpr std::size_t kFields = 30;
  const Rows rows = DriftingRows(300, kFields, 0.02, false);
  VariableListBuilder builder;
  for (const std::string& name : Names(kFields)) builder.Continuous(name);
  const AlgorithmElement result =
      RunEntry(builder.Weight("n").Build(), rows, "RFriedmansTwoWayByRanks",
               Entry("variableName", Names(kFields), "typeOfMultipleComparison", "stepWise"));
  ExpectPlainSubsets(result, kFields, [&](std::vector<std::size_t> order) -> SigOf {
    return [&rows, order](std::size_t first, std::size_t last) {
      std::vector<double> sums(last - first + 1);
      RecordRanks ranks(sums.size());
      double n = 0.0;
      for (const std::vector<double>& row : rows) {
        for (std::size_t i = 0; i < sums.size(); ++i) ranks.Put(i, row[order[first + i]]);
        ranks.Rank(sums.size());
        for (std::size_t i = 0; i < sums.size(); ++i) sums[i] += row.back() * ranks.RankOf(i);
        n += row.back();
      }
      return Friedman(sums, n, 0.0).sig;
    };
  });
}

TEST(StepDownsTest, SuccessesOfManyFields) {
  constexpr std::size_t kFields = 30;
  const Rows rows = DriftingRows(300, kFields, 0.03, true);
  VariableListBuilder builder;
  for (const std::string& name : Names(kFields)) builder.Nominal(name, {"1", "0"});
  const AlgorithmElement result =
      RunEntry(builder.Weight("n").Build(), rows, "RCochransQ",
               Entry("variableName", Names(kFields), "typeOfMultipleComparison", "stepWise")
                   .Put("classFormation", "givenCategoryList", "successCategoryList", Texts{"1"}));
  ExpectPlainSubsets(result, kFields, [&](std::vector<std::size_t> order) -> SigOf {
    return [&rows, order](std::size_t first, std::size_t last) {
      const auto k = static_cast<double>(last - first + 1);
      std::vector<std::int64_t> successes(last - first + 1);
      double within = 0.0;
      for (const std::vector<double>& row : rows) {
        double r = 0.0;
        for (std::size_t i = 0; i < successes.size(); ++i) {
          if (row[order[first + i]] != 0.0) continue;
          successes[i] += static_cast<std::int64_t>(row.back());
          r += 1.0;
        }
        within += row.back() * r * (k - r);
      }
      return CochranQ(successes, within).sig;
    };
  });
}

}  // namespace
