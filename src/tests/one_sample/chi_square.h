#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kit/contract/test.h"
#include "kit/statistics/chi_square.h"

/// One-sample chi-square test: do the category frequencies of one field fit given proportions?
///
/// O_i are the sums of weights in the c categories (all of the field, or a given list), p_i the
/// proportions (equal, or given); figures as in kit/statistics/chi_square.h. The frequencies come
/// from the shared summaries; the one pass counts nothing. A listed value that is no category of
/// the field stands with O = 0.
///
/// Source: K. Pearson, Philosophical Magazine 50 (1900).
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
  std::int64_t totalN = 0;
  ChiSquareFigures figures;
};
