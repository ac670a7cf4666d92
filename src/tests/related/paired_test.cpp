#include "tests/related/paired_test.h"

#include "report/extended_tables.h"

void NPARPairedTest::StartPass() { differences.StartHistogram(); }

void NPARPairedTest::TakeAgain(RecordBatch& batch) {
  differences.AddToHistogram(differences.Of(batch), batch.Size(), weight.TruncatedOf(batch));
}

void NPARPairedTest::Finish() { differences.EndHistogram(); }

void NPARPairedTest::PrepareExtended() {
  fields = FieldQuartiles({differences.First(), differences.Second()});
}

void NPARPairedTest::KeepFields(RecordBatch& batch) {
  if (wantsExtended) fields.Take(batch, weight);
}

void NPARPairedTest::KeepDifferences(RecordBatch& batch, const double* d) {
  if (!wantsExtended) return;
  if (fields.Count() > FieldQuartiles::kMostUnits) {
    kept = WeightedValues();
    return;
  }
  weight.UseTruncated(batch, [&](auto weightAt) {
    for (std::size_t i = 0; i < batch.Size(); ++i) {
      if (weightAt(i) > 0) kept.Add(d[i], weightAt(i));
    }
  });
}

const WeightedValues& NPARPairedTest::SortDifferences() {
  kept.Sort();
  return kept;
}

void NPARPairedTest::AddFields(ExtendedFigures& figures) {
  fields.Sort();
  figures.Add(FieldsTable(fields));
}
