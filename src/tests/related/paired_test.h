#pragma once

#include "kit/contract/test.h"
#include "kit/groups/paired_differences.h"
#include "kit/order/order_statistics.h"
#include "kit/summaries/field_quartiles.h"

/// What the tests of the differences of two fields do alike: a further pass makes the histogram of
/// the differences, whose range the first one found.
class NPARPairedTest : public NPARTest {
 public:
  using NPARTest::NPARTest;
  [[nodiscard]] bool TakesCells() const override { return true; }

 protected:
  void StartPass() override;
  void TakeAgain(RecordBatch& batch) override;
  void Finish() override;

  /// In Prepare: the pair. Fails with the code where "variableIndex" does not hold two positions.
  void PreparePair(const SettingsReader& settings, std::int32_t wrongCount);
  /// In Take: the differences. The values of both fields are kept for extended figures.
  const double* TakePair(RecordBatch& batch);
  /// The same; the differences are counted, and kept as well.
  const double* TakeDifferences(RecordBatch& batch);
  /// In Extend: the kept differences ascending; none where there are too many.
  [[nodiscard]] const WeightedValues& SortDifferences();
  /// In Extend: the table "Fields".
  void AddFields(ExtendedFigures& figures);

  PairedDifferences differences;

 private:
  void KeepDifferences(RecordBatch& batch, const double* d);

  FieldQuartiles fields;
  WeightedValues kept;  // differences
};
