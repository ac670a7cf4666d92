#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "catalogue/shared_codes.h"
#include "foundation/names.h"
#include "kit/contract/stage_progress.h"
#include "kit/contract/test.h"
#include "kit/order/interruption.h"

/// What a test of k samples goes on with after a significant result.
enum class ComparisonKind { None, Pairwise, Stepwise };

/// The kind named "pairWise" or "stepWise"; None for any other word.
[[nodiscard]] ComparisonKind ComparisonFromWord(std::string_view typeOfMultipleComparison);
/// The kind whose number, "pairWise" or "stepWise", is 1 in the settings of a test.
[[nodiscard]] ComparisonKind ComparisonFromFlags(const SettingsReader& settings);

/// A sample: its variable's index or its group's code, and the measure that orders it.
struct ComparedSample {
  std::int32_t index = 0;
  double measure = 0.0;
};
/// Ascending by measure; equal ones keep their order.
void OrderByMeasure(std::vector<ComparedSample>& samples);

/// What a test computes for a pair of samples. The missing value stands for a figure that the test
/// does not have.
struct PairFigures {
  double testStatistic;
  double standardError;
  double standardTestStatistic;
  double sig;
};
/// z = difference / standardError, judged two-sided.
[[nodiscard]] PairFigures NormalPair(double difference, double standardError);

/// A pair of samples by their places in the list of samples, sample1 < sample2.
struct PairwiseComparison {
  std::int32_t sample1;
  std::int32_t sample2;
  PairFigures figures;
  double adjSig;  ///< Bonferroni: min(1, k (k - 1) / 2 sig)
};

/// Neighbouring samples by their places in the ordered list, both ends included.
struct SampleRange {
  std::size_t first;
  std::size_t last;
  [[nodiscard]] std::size_t Size() const noexcept { return last - first + 1; }
  [[nodiscard]] bool Covers(const SampleRange& other) const noexcept {
    return first <= other.first && other.last <= last;
  }
};
struct RangeFigures {
  double testStatistic = QDMV::gMissingValue;
  double sig = QDMV::gMissingValue;
};
/// Do the terms of the samples of a range sum to more than a bound? None is below 0. In their order
/// the samples at the ends mostly have the largest terms, so that a few of them are enough.
template <typename TermAt>
[[nodiscard]] bool TermsPass(const SampleRange& range, double bound, TermAt termAt) {
  double sum = 0.0;
  std::size_t low = range.first;
  for (std::size_t high = range.last; low < high && !(sum > bound); ++low, --high) {
    sum += termAt(low) + termAt(high);
  }
  return sum > bound;
}
/// Samples that the step-down does not tell apart; a single sample has no figures.
struct HomogeneousSubset {
  SampleRange range;
  RangeFigures figures;
  double adjSig = QDMV::gMissingValue;
};

/// Where the step-downs of the tests part.
struct StepwisePolicy {
  /// A range is told apart when sigLevel is above its adjusted significance, or its plain one.
  bool judgesOnAdjusted = true;
  /// A range that shrank to one sample is a subset of its own, and in the end the subsets are
  /// cleaned of those inside others and put in order; otherwise such a range is dropped, and its
  /// sample is found at the finish, should no subset hold it.
  bool keepsShrunkSingles = false;
  /// The test keeps a table of all pairs of groups for its ranges too.
  bool countsPairsOfGroups = false;
};

/// Multiple comparisons of k samples after a significant overall test: which of them differ?
///
/// Pairwise, every pair is compared at once. Stepwise, the samples stand in an order, and ranges of
/// neighbours are tested: (0, k-2), (1, k-1), (2, k-1), ..., (k-2, k-1) at first. A range whose
/// samples differ loses its last one and is tested again once all others were; one whose samples do
/// not is a homogeneous subset.
///
/// The significance of a range of m samples is adjusted as 1 - (1 - sig)^(k/m), or left as it is
/// for m >= k - 1: T. A. Ryan, Psychological Bulletin 57 (1960); I. Einot and K. R. Gabriel, JASA
/// 70 (1975); G. Campbell and J. H. Skillings, JASA 80 (1985).
class MultipleComparison {
 public:
  /// The codes live as long as the program.
  explicit MultipleComparison(const catalogue::ComparisonCodes& codes, StepwisePolicy policy = {})
      : codes(codes), policy(policy) {}

  void Want(ComparisonKind kind) noexcept { wanted = kind; }
  [[nodiscard]] ComparisonKind Kind() const noexcept { return wanted; }
  [[nodiscard]] bool WantsPairwise() const noexcept { return wanted == ComparisonKind::Pairwise; }
  [[nodiscard]] bool WantsStepwise() const noexcept { return wanted == ComparisonKind::Stepwise; }
  /// True once the wanted comparison has run.
  [[nodiscard]] bool IsDone() const noexcept { return done; }
  /// True while a wanted comparison has not run.
  [[nodiscard]] bool IsPending() const noexcept { return wanted != ComparisonKind::None && !done; }

  /// A table of the pairs of more samples than these would fill many gigabytes.
  static constexpr std::size_t kMostSamplesInPairs = 4096;

  /// Why a wanted comparison falls away after the overall test: its warning where the test is not
  /// significant or there are fewer than 3 samples, 220027 with their number where it wants a table
  /// of too many pairs. Nothing where it goes on.
  [[nodiscard]] std::optional<NPARMessage> ReasonAgainst(double sigLevel, double overallSig,
                                                         std::size_t sampleCount) const;
  /// Decides after the overall test, and gives a comparison up with that warning; true: it goes on.
  bool PassGate(NPARTest& test, double sigLevel, double overallSig, std::size_t sampleCount);

  /// Compares all pairs of samples. `compare(i, j)` gives the figures of two places, i < j;
  /// `adjustedFor` is the k of the adjustment.
  template <typename Compare>
  void RunPairwise(std::vector<ComparedSample> list, std::size_t adjustedFor, Compare&& compare) {
    samples = std::move(list);
    const auto count = static_cast<std::int32_t>(samples.size());
    const std::size_t pairCount = samples.size() * (samples.size() - 1) / 2;
    pairs.reserve(pairCount);
    for (std::int32_t i = 0; i < count; ++i) {
      StageProgress::Tell(static_cast<double>(pairs.size()) / static_cast<double>(pairCount));
      for (std::int32_t j = i + 1; j < count; ++j) {
        Interruption::Check();
        AddPair(i, j, adjustedFor, compare(i, j));
      }
    }
    done = true;
  }

  /// The significance below which a range is told apart: its adjusted one is below the level then.
  /// While the step-down runs.
  [[nodiscard]] double DecidingLevel(const SampleRange& range) const;

  /// Computes a range; nothing: its significance is for certain below the deciding level, and what
  /// it is nobody asks.
  using ComputeRange = std::function<std::optional<RangeFigures>(const SampleRange&)>;
  /// The whole step-down of at least 3 samples in their order, at the test's level. A range that a
  /// subset covers could only lead to others so covered and is dropped uncomputed. In the end the
  /// test is warned (220013) of each sample that stands alone.
  void RunStepwise(NPARTest& test, std::vector<ComparedSample> orderedSamples,
                   const ComputeRange& compute);

  /// In the test's order, or in that of the step-down.
  [[nodiscard]] const std::vector<ComparedSample>& GetSamples() const noexcept { return samples; }
  [[nodiscard]] const std::vector<PairwiseComparison>& GetPairs() const noexcept { return pairs; }
  [[nodiscard]] const std::vector<HomogeneousSubset>& GetSubsets() const noexcept {
    return subsets;
  }

 private:
  void AddPair(std::int32_t i, std::int32_t j, std::size_t adjustedFor, const PairFigures& figures);
  void AddSubset(const SampleRange& range, const RangeFigures& figures, double adjSig);
  bool AddIfHomogeneous(const SampleRange& range, const RangeFigures& figures);
  [[nodiscard]] bool IsCovered(const SampleRange& range) const noexcept {
    return coveredUpTo[range.first] > range.last;
  }
  [[nodiscard]] bool WantsTooManyPairs(std::size_t sampleCount) const noexcept {
    return sampleCount > kMostSamplesInPairs && (WantsPairwise() || policy.countsPairsOfGroups);
  }
  [[nodiscard]] bool IsAdjusted(std::size_t rangeSize) const noexcept {
    return rangeSize + 1 < samples.size();
  }
  [[nodiscard]] double AdjustedSig(double sig, std::size_t rangeSize) const;
  void StartStepwise(std::vector<ComparedSample> orderedSamples, double level);
  /// Judges each range of the work list; those told apart shrink and stay in it.
  void JudgeWorkList(const ComputeRange& compute);
  void FinishStepwise(NPARTest& test);
  void AddUncoveredSingles();
  void CleanSubsets();
  void WarnOfSingles(NPARTest& test) const;

  const catalogue::ComparisonCodes& codes;
  StepwisePolicy policy;
  ComparisonKind wanted = ComparisonKind::None;
  bool done = false;
  double sigLevel = 0.05;
  std::vector<ComparedSample> samples;
  std::vector<PairwiseComparison> pairs;
  std::vector<SampleRange> workList;
  std::vector<HomogeneousSubset> subsets;
  /// By place: one past the last sample of the subsets that start there or before; 0 for none.
  std::vector<std::size_t> coveredUpTo;
};
