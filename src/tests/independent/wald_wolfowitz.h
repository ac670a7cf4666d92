#pragma once

#include <cstdint>
#include <optional>

#include "kit/ranks/merged_runs.h"
#include "kit/statistics/runs.h"
#include "tests/independent/two_group_test.h"

/// Wald-Wolfowitz runs test: do two groups come from one population? Few runs in the merged
/// ascending values speak against it.
///
/// Formulas, limits, sources: docs/statistics/wald_wolfowitz.md.
///
/// Ties between the groups leave the number of runs open: the figures are given for the smallest
/// and for the largest possible one, and the largest decides.
class NPARWaldWolfRuns final : public NPARTwoGroupTest {
 public:
  /// The largest N with an exact p.
  static constexpr std::int64_t kExactLimit = 30;

  explicit NPARWaldWolfRuns(QDSettings* settings);

  XMLElement* WriteResults() override;

 protected:
  /// Warning 220616 with the number of blocks of values that both groups have.
  void TakeUnits(const GroupTally::Units& units) override;
  void ComputeFigures() override;
  void Extend(ExtendedFigures& figures) override;

 private:
  struct Figures {
    std::int64_t runs = 0;
    double standardTestStatistic = 0.0;
    double asymptoticSig = 0.0;
    std::optional<double> exactSig;
    [[nodiscard]] double Sig() const { return exactSig.value_or(asymptoticSig); }
  };
  [[nodiscard]] Figures FiguresOf(std::int64_t runCount) const;
  void WriteFigures(XMLElement& statistics, const char* name, const Figures& figures) const;

  MergedRuns runs;
  RunsApproximation approximation;
  Figures minimum;
  Figures maximum;
};
