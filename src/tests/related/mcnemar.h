#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kit/contract/test.h"
#include "kit/groups/success_categories.h"
#include "kit/statistics/chi_square.h"
#include "tests/related/category_pair.h"

/// McNemar test: do two related binary fields have the same proportion of successes?
///
/// Formulas, limits, sources: docs/statistics/mcnemar.md.
///
/// Success is what kit/groups/success_categories.h says. The asymptotic value decides, also beside
/// an exact one. One pass.
class NPARMcNemar final : public NPARTest {
 public:
  /// The largest n with an exact value.
  static constexpr std::int64_t kExactLimit = 25;

  /// Takes the settings over, not the variables.
  NPARMcNemar(QDSettings* settings, const QDVarList* variables);

  XMLElement* WriteResults() override;

 protected:
  /// Errors 221606, 221609, 221610, 221611: no split in success and failure.
  void Prepare(const SettingsReader& settings) override;
  void Take(RecordBatch& batch) override;
  /// Help message 221612: the exact value is given. Error 221605: the binomial function failed.
  void Compute() override;
  void Extend(ExtendedFigures& extended) override;

 private:
  /// "Row..." or "Column...": the categories of one field on either side.
  void WriteSide(XMLElement& parent, std::size_t place) const;

  CategoryPair pair;
  SuccessCategories categories;
  std::vector<std::string> givenTexts;                // as the user wrote them
  std::array<std::vector<double>, 2> givenSuccesses;  // category codes by field, -1: no category
  std::array<std::vector<double>, 2> givenFailures;
  std::array<std::array<std::int64_t, 2>, 2> table{};  // weights; [1][0]: the first alone succeeds
  ChiSquareFigures figures;
  std::optional<double> exactSig;
};
