#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kit/contract/column_test.h"
#include "kit/groups/success_categories.h"
#include "kit/records/record_weight.h"
#include "kit/statistics/mcnemar.h"

/// McNemar test: do two related binary fields have the same share of successes?
///
/// b and c are the weights of the records in which only the second, only the first field is a
/// success; figures as in kit/statistics/mcnemar.h, the exact one for b + c <= 25. The asymptotic
/// value decides. Success is what kit/success_categories.h says. One pass.
///
/// Source: Q. McNemar, Psychometrika 12 (1947); correction of A. L. Edwards, Psychometrika 13
/// (1948).
class NPARMcNemar final : public NPARRecordTest {
 public:
  /// The largest n with an exact value.
  static constexpr std::int64_t kExactLimit = 25;

  /// Takes the settings over, not the variables.
  NPARMcNemar(QDSettings* settings, const QDVarList* variables);

  void SetSharedData(UnivariateResults* data) override { sharedData = data; }
  /// Errors 221606, 221609, 221610, 221611: no split in success and failure.
  QDStatus BeginPass() override;
  QDStatus ProcessRecord(const Record& record) override;
  bool NeedsAnotherPass() override { return false; }
  /// Help message 221612: the exact value is given. Error 221605: the binomial function failed.
  QDStatus EndPass() override;
  void GetRequiredVariables(std::vector<std::int64_t>& positions) override;
  XMLElement* WriteResults() override;

 private:
  void ReadSettings();
  /// "Row..." or "Column...": the categories of one field on either side.
  void WriteSide(XMLElement& parent, std::size_t place) const;

  UnivariateResults* sharedData = nullptr;
  RecordWeight weight;
  double sigLevel = 0.05;
  std::int32_t first = -1;
  std::int32_t second = -1;
  bool userSpecifyGroupList = false;
  std::vector<double> successNumbers;
  std::vector<std::string> successTexts;
  std::vector<std::string> givenTexts;                // as the user wrote them
  std::array<std::vector<double>, 2> givenSuccesses;  // category codes by field, -1: no category
  std::array<std::vector<double>, 2> givenFailures;
  SuccessCategories categories;
  std::int64_t bothSuccess = 0;
  std::int64_t successFail = 0;  // c: first a success, second not
  std::int64_t failSuccess = 0;  // b
  std::int64_t bothFail = 0;
  ChiSquareFigures figures;
  std::optional<double> exactSig;
};
