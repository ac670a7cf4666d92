#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "kit/ranks/rank.h"
#include "kit/ranks/ties.h"
#include "tests/independent/two_group_test.h"

/// The mid-ranks of some control units, found in one walk over all units in ascending order, so
/// that no others need to be kept.
class ControlRanks {
 public:
  static constexpr std::size_t kCount = 4;

  ControlRanks() = default;
  /// Which units, counted from 1, in ascending order; from 1 to the sum of the controls' weights.
  explicit ControlRanks(const std::array<std::int64_t, kCount>& units) noexcept : units(units) {}
  void Add(const GroupTally::Units& records) noexcept;
  /// Call it once, after the last units.
  void CloseRun() noexcept;
  [[nodiscard]] double Of(std::size_t place) const noexcept { return ranks[place]; }

 private:
  /// Passes over the first of the records, where none of the units is wanted, up to the start of a
  /// run; how many.
  std::size_t PassOver(const GroupTally::Units& records) noexcept;

  std::array<std::int64_t, kCount> units{};
  std::array<double, kCount> ranks{};
  std::size_t found = 0;   // units that stood in a run up to the open one
  std::size_t ranked = 0;  // those of them whose run is closed
  std::int64_t controls = 0;
  std::int64_t ranksBelow = 0;
  std::int64_t runWeight = 0;
  TieRuns runs;
};

/// Moses test of extreme reactions: does the experimental group, group 2, react toward both
/// extremes, so that the control group, group 1, spans few ranks?
///
/// Formulas, limits, sources: docs/statistics/moses.md.
///
/// Pass 0 ranks and counts the groups, pass 1 finds the ranks at the ends of the two spans, of
/// which the trimmed one decides.
class NPARMoses final : public NPARTwoGroupTest {
 public:
  explicit NPARMoses(QDSettings* settings);

  XMLElement* WriteResults() override;

 protected:
  void Prepare(const SettingsReader& settings) override;
  /// Error 220516: the trimming leaves no control unit.
  void TakeUnits(const GroupTally::Units& units) override;
  void ComputeFigures() override;
  void TakeUnitsAgain(const GroupTally::Units& units) override;
  void Finish() override;

 private:
  struct Span {
    std::int64_t length = 0;
    double sig = 0.0;
  };
  [[nodiscard]] Span SpanOf(std::int64_t trimmedUnits, double first, double last) const;

  NPARRank ranks;
  ControlRanks ends;  // of the whole span and, inside it, of the trimmed one
  std::array<double, 2> meanRanks{0.0, 0.0};
  std::optional<std::int32_t> givenOutliers;
  std::int64_t outliers = 0;
  Span observed;
  Span trimmed;
};
