#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kit/contract/test.h"
#include "kit/statistics/chi_square.h"

/// One-sample chi-square test: do the category frequencies of one field fit given proportions?
///
/// Formulas, limits, sources: docs/statistics/chi_square.md.
///
/// The frequencies come from the shared summaries; the one pass counts nothing.
class NPARChiSquare final : public NPARTest {
 public:
  using NPARTest::NPARTest;

  XMLElement* WriteResults() override;

 protected:
  /// Error 220201: a needed setting is absent; 220212: as many expected values as categories are
  /// wanted.
  void Prepare(const SettingsReader& settings) override;
  /// Error 220003: the weights sum to 0. Help message 220211: cells with E below 5, their
  /// percentage, the smallest E.
  void Compute() override;
  void Extend(ExtendedFigures& figures) override;

 private:
  struct Category {
    std::int32_t code;  // -1 for a value that is none of the field
    std::int64_t observed;
    double proportion;
  };

  std::int32_t variableIndex = -1;
  bool userProbabilities = true;
  std::vector<std::string> givenTexts;
  std::vector<Category> categories;
  // By category.
  std::vector<std::int64_t> observed;
  std::vector<double> proportions;
  std::int64_t totalN = 0;
  ChiSquareFigures chiSquare;
};
