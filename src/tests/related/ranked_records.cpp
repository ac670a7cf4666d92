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
#include "report/extended_tables.h"
#include "tests/related/continuous_fields.h"

namespace {

constexpr const char* kComparisonKey = catalogue::settings::kComparison.key.c_str();
constexpr StepwisePolicy kPolicy{
    .judgesOnAdjusted = true, .keepsShrunkSingles = true, .countsPairsOfGroups = true};
constexpr std::int32_t kPassesWithStepwise = 2;

}  // namespace

NPARRankedRecords::NPARRankedRecords(QDSettings* settings, const Profile& profile)
    : NPARTest(settings), profile(profile), comparison(profile.codes.comparison, kPolicy) {}

void NPARRankedRecords::Prepare(const SettingsReader& settings) {
  variables = settings.List<std::int32_t>("variableIndex");
  const std::size_t k = variables.size();
  if (k < 2) Fail(profile.codes.fields.wrongCount);
  if (HasFailed()) return;
  Require(variables);
  comparison.Want(ComparisonFromWord(settings.Text(kComparisonKey)));
  if (comparison.WantsStepwise()) ExpectPasses(kPassesWithStepwise);
  rankSums.assign(k, 0.0);
  ranks = ColumnRanks(k);
  rankCounts = RankCounts(k);
  if (wantsExtended) quartiles = FieldQuartiles(variables);
}

void NPARRankedRecords::Take(RecordBatch& batch) {
  if (wantsExtended) quartiles.Take(batch, weight);
  weight.UseTruncated(batch, [&](auto weightAt) {
    for (std::size_t first = 0; first < batch.Size(); first += ranks.RecordsAtOnce()) {
      const std::size_t count = std::min(ranks.RecordsAtOnce(), batch.Size() - first);
      RankFields(batch, first, count, [&](std::size_t i) { return weightAt(first + i); });
    }
  });
}

void NPARRankedRecords::StartPass() {
  ordered = MeanRanks();
  OrderByMeasure(ordered);
  ranges = RangeRanks(ordered.size());
}

void NPARRankedRecords::TakeAgain(RecordBatch& batch) {
  fields.clear();
  for (const ComparedSample& sample : ordered) fields.push_back(batch.Of(sample.index));
  ranges.Add(fields, batch, weight);
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
  ranges.Finish();
  comparison.RunStepwise(*this, std::move(ordered),
                         [this](const SampleRange& range) { return ComputeRange(range); });
  ranges = RangeRanks();
}

// X of a range has no correction for ties, and is a sum of positive terms.
bool NPARRankedRecords::IsSurelyApart(const SampleRange& range) const {
  const auto k = static_cast<double>(range.Size());
  const double enough = (k + 1.0) * k * Records() / 12.0 *
                        SurelySignificantChiSquare(comparison.DecidingLevel(range), range.Size());
  return TermsPass(range, enough, [&](std::size_t place) {
    const double deviation = ranges.RankSum(range, place) - Records() * (k + 1.0) * 0.5;
    return deviation * deviation;
  });
}

std::optional<RangeFigures> NPARRankedRecords::ComputeRange(const SampleRange& range) const {
  if (IsSurelyApart(range)) return std::nullopt;
  std::vector<double> sums;
  sums.reserve(range.Size());
  for (std::size_t place = range.first; place <= range.last; ++place) {
    sums.push_back(ranges.RankSum(range, place));
  }
  return ComputeFigures(sums, 0.0);
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

void NPARRankedRecords::Extend(ExtendedFigures& figures) {
  if (const auto concordance = FindConcordance(rankSums, Records(), rankCounts.TieSum())) {
    if (const auto& f = concordance->imanDavenport) {
      figures.Add("ImanDavenportF", f->f);
      figures.Add("ImanDavenportFDegreeOfFreedom1", f->df1);
      figures.Add("ImanDavenportFDegreeOfFreedom2", f->df2);
      figures.Add("ImanDavenportFSig", f->sig);
    }
    figures.Add("MeanSpearman", concordance->meanSpearman);
  }
  quartiles.Sort();
  figures.Add(FieldsTable(quartiles));
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
  LookUpContinuousFields(construction, profile.codes.fields, FieldCount::TwoOrMore);
  std::string word;
  if (construction.IsOK() && !construction.Read(kComparisonKey, word)) {
    construction.Fail(profile.codes.noComparison);
  }
  if (ComparisonFromWord(word) != ComparisonKind::None) construction.Put(kComparisonKey, word);
}
