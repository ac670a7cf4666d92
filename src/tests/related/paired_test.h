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

 protected:
  void StartPass() override;
  void TakeAgain(RecordBatch& batch) override;
  void Finish() override;

  /// In Prepare, once the pair is read: the values of both fields are kept for extended figures.
  void PrepareExtended();
  /// In Take, with the differences `d`: keeps both, as far as extended figures are wanted.
  void KeepFields(RecordBatch& batch);
  void KeepDifferences(RecordBatch& batch, const double* d);
  /// In Extend: the kept differences ascending; none where there are too many.
  [[nodiscard]] const WeightedValues& SortDifferences();
  /// In Extend: the table "Fields".
  void AddFields(ExtendedFigures& figures);

  PairedDifferences differences;

 private:
  FieldQuartiles fields;
  WeightedValues kept;  // differences
};
