#include "tests/related/ranked_records.h"

#include <algorithm>
#include <string>
#include <utility>

#include "catalogue/run.h"
#include "catalogue/settings.h"
#include "kit/statistics/friedman.h"
#include "planning/test_construction.h"
#include "report/algorithm_element.h"
#include "report/comparison_tables.h"
#include "report/elements.h"

namespace {

constexpr const char* kComparisonKey = catalogue::settings::kComparison.key.c_str();
constexpr StepwisePolicy kPolicy{.judgesOnAdjusted = true, .keepsShrunkSingles = true};

/// Calls `use(first, count, weightOf)` for as many records at a time as `ranks` can take.
template <typename Use>
void ForEachPart(RecordBatch& batch, const RecordWeight& weight, const ColumnRanks& ranks,
                 Use use) {
  weight.UseTruncated(batch, [&](auto weightAt) {
    for (std::size_t first = 0; first < batch.Size(); first += ranks.RecordsAtOnce()) {
      const std::size_t count = std::min(ranks.RecordsAtOnce(), batch.Size() - first);
      use(first, count, [&](std::size_t i) { return weightAt(first + i); });
    }
  });
}

}  // namespace

NPARRankedRecords::NPARRankedRecords(QDSettings* settings, const Profile& profile)
    : NPARTest(settings), profile(profile), comparison(profile.comparisonCodes, kPolicy) {}

void NPARRankedRecords::Prepare(const SettingsReader& settings) {
  variables = settings.List<std::int32_t>("variableIndex");
  const std::size_t k = variables.size();
  if (k < 2) Fail(profile.fieldCodes.wrongCount);
  if (HasFailed()) return;
  Require(variables);
  comparison.Want(ComparisonFromWord(settings.Text(kComparisonKey)));
  if (comparison.WantsStepwise()) ExpectPasses(static_cast<std::int32_t>(k));
  rankSums.assign(k, 0.0);
  ranks = ColumnRanks(k);
  rankCounts = RankCounts(k);
}

void NPARRankedRecords::Take(RecordBatch& batch) {
  ForEachPart(batch, weight, ranks, [&](std::size_t first, std::size_t count, auto weightOf) {
    RankFields(batch, first, count, weightOf);
  });
}

void NPARRankedRecords::StartPass() {
  if (Pass() == 1) {
    std::vector<ComparedSample> samples = MeanRanks();
    OrderByMeasure(samples);
    comparison.StartStepwise(std::move(samples), sigLevel);
  }
  rangeRankSums.clear();
  for (const SampleRange& range : comparison.GetWorkList()) {
    rangeRankSums.emplace_back(range.Size(), 0.0);
  }
}

void NPARRankedRecords::TakeAgain(RecordBatch& batch) {
  ForEachPart(batch, weight, ranks, [&](std::size_t first, std::size_t count, auto weightOf) {
    RankRanges(batch, first, count, weightOf);
  });
}

template <typename WeightOf>
void NPARRankedRecords::RankFields(RecordBatch& batch, std::size_t first, std::size_t count,
                                   WeightOf weightOf) {
  fields.clear();
  for (const std::int32_t variable : variables) fields.push_back(batch.Of(variable));
  ranks.Rank(fields, first, count);
  for (std::size_t i = 0; i < fields.size(); ++i) {
    rankCounts.Add(i, ranks.StepsOf(i), count, weightOf);
  }
  for (std::size_t i = 0; i < count; ++i) totalN += weightOf(i);
}

template <typename WeightOf>
void NPARRankedRecords::RankRanges(RecordBatch& batch, std::size_t first, std::size_t count,
                                   WeightOf weightOf) {
  const std::vector<ComparedSample>& samples = comparison.GetSamples();
  const std::vector<SampleRange>& ranges = comparison.GetWorkList();
  // Values tie as they do in the whole record: a range ranks what they have there.
  fields.clear();
  for (const ComparedSample& sample : samples) fields.push_back(batch.Of(sample.index));
  ranks.Rank(fields, first, count);
  wholeRanks.resize(samples.size());
  for (std::size_t place = 0; place < samples.size(); ++place) {
    wholeRanks[place].assign(ranks.StepsOf(place), ranks.StepsOf(place) + count);
  }
  for (std::size_t i = 0; i < ranges.size(); ++i) {
    fields.clear();
    for (std::size_t place = ranges[i].first; place <= ranges[i].last; ++place) {
      fields.push_back(wholeRanks[place].data());
    }
    ranks.Rank(fields, 0, count);
    for (std::size_t field = 0; field < fields.size(); ++field) {
      const std::int32_t* steps = ranks.StepsOf(field);
      std::int64_t twice = 0;
      for (std::size_t j = 0; j < count; ++j) twice += weightOf(j) * (steps[j] + 2);
      rangeRankSums[i][field] += static_cast<double>(twice) * 0.5;
    }
  }
}

void NPARRankedRecords::Compute() {
  if (totalN <= 0) {
    Fail(catalogue::run::kNoData);
    return;
  }
  for (std::size_t i = 0; i < variables.size(); ++i) rankSums[i] = rankCounts.RankSum(i);
  overall = ComputeFigures(rankSums, rankCounts.TieSum());
  const bool goesOn = comparison.PassGate(*this, sigLevel, overall.sig, variables.size());
  if (goesOn && comparison.WantsPairwise()) ComparePairs();
  if (!comparison.IsPending()) ExpectPasses(0);
}

void NPARRankedRecords::Finish() {
  comparison.EndStepwisePass(
      *this, [this](std::size_t i) { return ComputeFigures(rangeRankSums[i], 0.0); });
  ExpectPasses(comparison.IsPending() ? std::max(GetPassesLeft(), 1) : 0);
}

RangeFigures NPARRankedRecords::ComputeFigures(const std::vector<double>& sums,
                                               const DoubleDouble& tieSum) const {
  const auto [x, sig] = Friedman(sums, Records(), tieSum);
  return {x, sig};
}

std::vector<ComparedSample> NPARRankedRecords::MeanRanks() const {
  std::vector<ComparedSample> samples;
  for (std::size_t i = 0; i < variables.size(); ++i) {
    samples.push_back({variables[i], rankSums[i] / Records()});
  }
  return samples;
}

void NPARRankedRecords::ComparePairs() {
  const double n = Records();
  const double standardError = FriedmanPairStandardError(Fields(), n);
  comparison.RunPairwise(MeanRanks(), variables.size(), [&](std::int32_t i, std::int32_t j) {
    const double difference =
        rankSums[static_cast<std::size_t>(i)] - rankSums[static_cast<std::size_t>(j)];
    return NormalPair(difference / n, standardError);
  });
}

XMLElement* NPARRankedRecords::WriteResults() {
  return WriteAlgorithm(
      *this,
      {.card = profile.card,
       .decidingSig = overall.sig,
       .condition = {profile.conditionKey, {JoinIntegers(variables)}},
       .messagesLast = true},
      [this](XMLElement& algorithm) {
        const std::vector<ComparedSample> samples = MeanRanks();
        for (std::size_t i = 0; i < samples.size(); ++i) {
          XMLElement* table =
              AddFigures(algorithm, "VariableInformation" + std::to_string(i),
                         {{"GroupIndex", samples[i].index}, {"MeanOfRank", samples[i].measure}});
          AddIntervalTable(*table, rankCounts.CountsOf(i));
        }
        WriteComparison(algorithm, comparison);
        XMLElement* statistics = AddFigures(algorithm, "StatisticsResult", {{"TotalN", totalN}});
        WriteOwnFigures(*statistics);
        AddAttributeRow(*statistics, "TestStatistic", overall.testStatistic);
        AddAttributeRow(*statistics, "DegreeOfFreedom", variables.size() - 1);
        AddAttributeRow(*statistics, "AsymptoticSig2Tailed", overall.sig);
      });
}

void NPARRankedRecords::ReadEntry(TestConstruction& construction, const Profile& profile) {
  LookUpContinuousFields(construction, profile.fieldCodes, FieldCount::TwoOrMore);
  std::string word;
  if (construction.IsOK() && !construction.Read(kComparisonKey, word)) {
    construction.Fail(profile.noComparison);
  }
  if (ComparisonFromWord(word) != ComparisonKind::None) construction.Put(kComparisonKey, word);
}
