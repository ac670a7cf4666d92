#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "kit/ranks/rank.h"
#include "tests/independent/control_ranks.h"
#include "tests/independent/two_group_test.h"

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
  void Extend(ExtendedFigures& figures) override;

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
