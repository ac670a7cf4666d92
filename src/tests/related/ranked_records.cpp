#include "tests/related/ranked_records.h"

#include <algorithm>
#include <string>
#include <utility>

#include "kit/statistics/friedman.h"
#include "planning/test_construction.h"
#include "report/comparison_tables.h"
#include "report/elements.h"
#include "report/messages.h"

namespace {

constexpr std::int32_t kNoData = 220003;  // the weights sum to 0
constexpr const char* kComparisonKey = "typeOfMultipleComparison";
constexpr StepwisePolicy kPolicy{.judgesOnAdjusted = true, .keepsShrunkSingles = true};

}  // namespace

NPARRankedRecords::NPARRankedRecords(QDSettings* settings, const Profile& profile)
    : NPARColumnTest(settings), profile(profile), comparison(profile.comparisonCodes, kPolicy) {}

void NPARRankedRecords::ReadSettings() {
  static_cast<void>(settings->GetSettingValByName("sigLevel", sigLevel));
  static_cast<void>(settings->GetSettingValByName("variableIndex", variables));
  weight = RecordWeight(*settings);
  std::string word;
  static_cast<void>(settings->GetSettingValByName(kComparisonKey, word));
  comparison.Want(ComparisonFromWord(word));
}

QDStatus NPARRankedRecords::BeginPass() {
  if (stage == Stage::Overall) {
    ReadSettings();
    if (status.IsError()) return status;
    const std::size_t k = variables.size();
    if (k < 2) {
      ReportStatus(QDStatus(profile.fieldCodes.wrongCount), MessageKind::Error);
      return status;
    }
    rankSums.assign(k, 0.0);
    ranks = ColumnRanks(k);
    rankCounts = RankCounts(k);
    passesLeft = comparison.WantsStepwise() ? static_cast<std::int32_t>(k) : 1;
    return status;
  }
  if (status.IsError()) return status;
  if (stage == Stage::StepDownAhead) StartStepDown();
  rangeRankSums.clear();
  for (const SampleRange& range : comparison.GetWorkList()) {
    rangeRankSums.emplace_back(range.Size(), 0.0);
  }
  return status;
}

void NPARRankedRecords::StartStepDown() {
  std::vector<ComparedSample> samples = MeanRanks();
  OrderByMeasure(samples);
  comparison.StartStepwise(std::move(samples), sigLevel);
  stage = Stage::StepDown;
}

QDStatus NPARRankedRecords::ProcessBatch(RecordBatch& batch) {
  if (status.IsError()) return status;
  weight.UseTruncated(batch, [&](auto weightAt) {
    for (std::size_t first = 0; first < batch.Size(); first += ranks.RecordsAtOnce()) {
      const std::size_t count = std::min(ranks.RecordsAtOnce(), batch.Size() - first);
      const auto weightOf = [&](std::size_t i) { return weightAt(first + i); };
      if (stage == Stage::Overall) {
        RankFields(batch, first, count, weightOf);
      } else {
        RankRanges(batch, first, count, weightOf);
      }
    }
  });
  return status;
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

QDStatus NPARRankedRecords::EndPass() {
  if (status.IsError()) return status;
  if (totalN == 0) {
    ReportStatus(QDStatus(kNoData), MessageKind::Error);
    return status;
  }
  --passesLeft;
  if (stage == Stage::Overall) {
    EndOverall();
  } else {
    comparison.EndStepwisePass(
        *this, [this](std::size_t i) { return ComputeFigures(rangeRankSums[i], 0.0); });
  }
  if (!NeedsAnotherPass()) passesLeft = 0;
  return status;
}

void NPARRankedRecords::EndOverall() {
  for (std::size_t i = 0; i < variables.size(); ++i) rankSums[i] = rankCounts.RankSum(i);
  overall = ComputeFigures(rankSums, rankCounts.TieSum());
  const bool goesOn = comparison.PassGate(*this, sigLevel, overall.sig, variables.size());
  if (goesOn && comparison.WantsPairwise()) ComparePairs();
  if (goesOn && comparison.WantsStepwise()) stage = Stage::StepDownAhead;
}

RangeFigures NPARRankedRecords::ComputeFigures(const std::vector<double>& sums,
                                               double tieTerms) const {
  const auto [x, sig] = Friedman(sums, static_cast<double>(totalN), tieTerms);
  return {x, sig};
}

std::vector<ComparedSample> NPARRankedRecords::MeanRanks() const {
  std::vector<ComparedSample> samples;
  for (std::size_t i = 0; i < variables.size(); ++i) {
    samples.push_back({variables[i], rankSums[i] / static_cast<double>(totalN)});
  }
  return samples;
}

void NPARRankedRecords::ComparePairs() {
  const auto n = static_cast<double>(totalN);
  const double standardError = FriedmanPairStandardError(Fields(), n);
  comparison.RunPairwise(MeanRanks(), variables.size(), [&](std::int32_t i, std::int32_t j) {
    const double difference =
        rankSums[static_cast<std::size_t>(i)] - rankSums[static_cast<std::size_t>(j)];
    return NormalPair(difference / n, standardError);
  });
}

bool NPARRankedRecords::NeedsAnotherPass() {
  return !status.IsError() && comparison.WantsStepwise() && !comparison.IsDone();
}

void NPARRankedRecords::GetRequiredVariables(std::vector<std::int64_t>& positions) {
  positions.assign(variables.begin(), variables.end());
}

XMLElement* NPARRankedRecords::WriteResults() {
  auto algorithm = CreateAlgorithm(profile.name, "hypothesis_test", "Related_Samples",
                                   DecisionWord(status, sigLevel, overall.sig));
  AddCondition(*algorithm, profile.conditionKey, {JoinIntegers(variables)});
  if (status.IsError()) {
    WriteMessages(*algorithm, messages);
    return algorithm.release();
  }
  const std::vector<ComparedSample> samples = MeanRanks();
  for (std::size_t i = 0; i < samples.size(); ++i) {
    XMLElement* table = AddStructuredTable(
        *algorithm, std::string("VariableInformation").append(std::to_string(i)));
    AddAttributeRow(*table, "GroupIndex", samples[i].index);
    AddAttributeRow(*table, "MeanOfRank", samples[i].measure);
    AddIntervalTable(*table, rankCounts.CountsOf(i));
  }
  WriteComparison(*algorithm, comparison);

  XMLElement* statistics = AddStructuredTable(*algorithm, "StatisticsResult");
  AddAttributeRow(*statistics, "TotalN", totalN);
  WriteOwnFigures(*statistics);
  AddAttributeRow(*statistics, "TestStatistic", overall.testStatistic);
  AddAttributeRow(*statistics, "DegreeOfFreedom", variables.size() - 1);
  AddAttributeRow(*statistics, "AsymptoticSig2Tailed", overall.sig);
  WriteMessages(*algorithm, messages);
  return algorithm.release();
}

void NPARRankedRecords::ReadEntry(TestConstruction& construction, const Profile& profile) {
  LookUpContinuousFields(construction, profile.fieldCodes, FieldCount::TwoOrMore);
  std::string word;
  if (construction.IsOK() && !construction.Read(kComparisonKey, word)) {
    construction.Fail(profile.noComparison);
  }
  if (ComparisonFromWord(word) != ComparisonKind::None) construction.Put(kComparisonKey, word);
}
