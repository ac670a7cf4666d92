#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kit/contract/column_test.h"
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
class NPARChiSquare final : public NPARRecordTest {
 public:
  using NPARRecordTest::NPARRecordTest;

  void SetSharedData(UnivariateResults* data) override { sharedData = data; }
  /// Error 220201: a needed setting is absent; 220212: as many expected values as categories are
  /// wanted.
  QDStatus BeginPass() override;
  QDStatus ProcessRecord(const Record&) override { return status; }
  bool NeedsAnotherPass() override { return false; }
  /// Error 220003: the weights sum to 0. Help message 220211: cells with E below 5, their
  /// percentage, the smallest E.
  QDStatus EndPass() override;
  void GetRequiredVariables(std::vector<std::int64_t>& positions) override;
  XMLElement* WriteResults() override;

 private:
  struct Category {
    std::int32_t code;
    std::int64_t observed;
    double proportion;
  };
  /// Categories by their codes, -1 for a value that is none, with the frequencies and proportions.
  void BuildCategories(const std::vector<double>& codes);

  UnivariateResults* sharedData = nullptr;
  std::int32_t variableIndex = -1;
  double sigLevel = QDMV::gMissingValue;
  bool userProbabilities = true;
  std::vector<std::string> givenTexts;
  std::vector<Category> categories;
  std::int64_t totalN = 0;
  ChiSquareFigures figures;
};
