#include "kit/comparisons/multiple_comparisons.h"

#include <algorithm>
#include <string>

#include "arithmetic/elementary.h"
#include "catalogue/run.h"
#include "kit/order/interruption.h"
#include "kit/statistics/normal.h"

namespace {

constexpr std::size_t kFewestSamples = 3;

}  // namespace

ComparisonKind ComparisonFromWord(std::string_view typeOfMultipleComparison) {
  if (typeOfMultipleComparison == "pairWise") return ComparisonKind::Pairwise;
  if (typeOfMultipleComparison == "stepWise") return ComparisonKind::Stepwise;
  return ComparisonKind::None;
}

ComparisonKind ComparisonFromFlags(const SettingsReader& settings) {
  if (settings.Get("stepWise", 0.0) == 1.0) return ComparisonKind::Stepwise;
  return settings.Get("pairWise", 0.0) == 1.0 ? ComparisonKind::Pairwise : ComparisonKind::None;
}

void OrderByMeasure(std::vector<ComparedSample>& samples) {
  std::ranges::stable_sort(samples, {}, &ComparedSample::measure);
}

PairFigures NormalPair(double difference, double standardError) {
  const double z = difference / standardError;
  return {difference, standardError, z, TwoSidedNormalSig(z)};
}

std::optional<NPARMessage> MultipleComparison::ReasonAgainst(double level, double overallSig,
                                                             std::size_t sampleCount) const {
  const bool isSignificant = level > overallSig;
  if (isSignificant && WantsTooManyPairs(sampleCount)) {
    return NPARMessage{QDStatus(catalogue::run::kTooManySamples),
                       MessageKind::Warning,
                       {std::to_string(sampleCount)},
                       {}};
  }
  if (isSignificant && sampleCount >= kFewestSamples) return std::nullopt;
  const std::int32_t pairwise = isSignificant ? codes.tooFewPairwise : codes.notSignificantPairwise;
  const std::int32_t stepwise = isSignificant ? codes.tooFewStepwise : codes.notSignificantStepwise;
  return NPARMessage{QDStatus(WantsPairwise() ? pairwise : stepwise), MessageKind::Warning, {}, {}};
}

bool MultipleComparison::PassGate(NPARTest& test, double level, double overallSig,
                                  std::size_t sampleCount) {
  if (wanted == ComparisonKind::None) return false;
  const std::optional<NPARMessage> reason = ReasonAgainst(level, overallSig, sampleCount);
  if (!reason) return true;
  test.AddMessage(*reason);
  wanted = ComparisonKind::None;
  return false;
}

void MultipleComparison::AddPair(std::int32_t i, std::int32_t j, std::size_t adjustedFor,
                                 const PairFigures& figures) {
  const auto k = static_cast<double>(adjustedFor);
  const double adjusted = k * figures.sig * (k - 1.0) * 0.5;
  pairs.push_back({i, j, figures, adjusted > 1.0 ? 1.0 : adjusted});
}

void MultipleComparison::StartStepwise(std::vector<ComparedSample> orderedSamples, double level) {
  samples = std::move(orderedSamples);
  sigLevel = level;
  const std::size_t count = samples.size();
  workList.clear();
  subsets.clear();
  coveredUpTo.assign(count, 0);
  for (std::size_t first = 0; first + 1 < count; ++first) workList.push_back({first, count - 1});
  // (0, k-1) is the overall test, which was significant.
  workList.front().last = count - 2;
}

void MultipleComparison::AddSubset(const SampleRange& range, const RangeFigures& figures,
                                   double adjSig) {
  subsets.push_back({range, figures, adjSig});
  for (std::size_t place = range.first;
       place < coveredUpTo.size() && coveredUpTo[place] <= range.last; ++place) {
    coveredUpTo[place] = range.last + 1;
  }
}

double MultipleComparison::AdjustedSig(double sig, std::size_t rangeSize) const {
  const std::size_t count = samples.size();
  if (!IsAdjusted(rangeSize)) return sig;
  return 1.0 -
         arithmetic::Pow(1.0 - sig, static_cast<double>(count) / static_cast<double>(rangeSize));
}

double MultipleComparison::DecidingLevel(const SampleRange& range) const {
  if (!policy.judgesOnAdjusted || !IsAdjusted(range.Size())) return sigLevel;
  const double share = static_cast<double>(range.Size()) / static_cast<double>(samples.size());
  return -arithmetic::Expm1(share * arithmetic::Log1p(-sigLevel));
}

bool MultipleComparison::AddIfHomogeneous(const SampleRange& range, const RangeFigures& figures) {
  const double adjSig = AdjustedSig(figures.sig, range.Size());
  if (sigLevel > (policy.judgesOnAdjusted ? adjSig : figures.sig)) return false;
  AddSubset(range, figures, adjSig);
  return true;
}

void MultipleComparison::JudgeWorkList(const ComputeRange& compute) {
  std::vector<SampleRange> left;
  for (SampleRange range : workList) {
    if (IsCovered(range)) continue;
    Interruption::Check();
    const std::optional<RangeFigures> figures = compute(range);
    if (figures && AddIfHomogeneous(range, *figures)) continue;
    --range.last;
    if (range.Size() > 1) {
      left.push_back(range);
    } else if (policy.keepsShrunkSingles && !IsCovered(range)) {
      AddSubset(range, {}, QDMV::gMissingValue);
    }
  }
  workList = std::move(left);
}

void MultipleComparison::RunStepwise(NPARTest& test, std::vector<ComparedSample> orderedSamples,
                                     const ComputeRange& compute) {
  StartStepwise(std::move(orderedSamples), test.GetSigLevel());
  while (!workList.empty()) {
    JudgeWorkList(compute);
    // The first range of a list is its widest, and there are about as many as it is wide.
    const double left = workList.empty() ? 0.0 : static_cast<double>(workList.front().Size());
    const double share = left / static_cast<double>(samples.size());
    StageProgress::Tell(1.0 - share * share);
  }
  FinishStepwise(test);
}

void MultipleComparison::FinishStepwise(NPARTest& test) {
  AddUncoveredSingles();
  if (policy.keepsShrunkSingles) CleanSubsets();
  WarnOfSingles(test);
  done = true;
}

void MultipleComparison::AddUncoveredSingles() {
  for (std::size_t place = 0; place < samples.size(); ++place) {
    const SampleRange single{place, place};
    if (!IsCovered(single)) AddSubset(single, {}, QDMV::gMissingValue);
  }
}

void MultipleComparison::CleanSubsets() {
  std::vector<HomogeneousSubset> kept;
  for (const HomogeneousSubset& subset : subsets) {
    const auto containers = std::count_if(
        subsets.begin(), subsets.end(),
        [&subset](const HomogeneousSubset& other) { return other.range.Covers(subset.range); });
    if (containers == 1) kept.push_back(subset);  // it contains itself
  }
  std::ranges::stable_sort(kept, {}, [](const HomogeneousSubset& s) { return s.range.first; });
  subsets = std::move(kept);
}

void MultipleComparison::WarnOfSingles(NPARTest& test) const {
  for (const HomogeneousSubset& subset : subsets) {
    if (subset.range.Size() != 1) continue;
    std::string group = std::to_string(subset.range.first);
    if (policy.keepsShrunkSingles) group += ';' + std::to_string(subset.range.last);
    test.AddMessage({QDStatus(catalogue::run::kSampleStandsAlone),
                     MessageKind::Warning,
                     {},
                     {{"group", std::move(group)}}});
  }
}
