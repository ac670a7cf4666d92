#include "tests/related/paired_test.h"

#include "report/extended_tables.h"

void NPARPairedTest::StartPass() { differences.StartHistogram(); }

void NPARPairedTest::TakeAgain(RecordBatch& batch) {
  differences.AddToHistogram(differences.Of(batch), batch.Size(), weight.TruncatedOf(batch));
}

void NPARPairedTest::Finish() { differences.EndHistogram(); }

void NPARPairedTest::PreparePair(const SettingsReader& settings, std::int32_t wrongCount) {
  if (!differences.ReadPair(settings)) Fail(wrongCount);
  Require({differences.First(), differences.Second()});
  fields = FieldQuartiles({differences.First(), differences.Second()});
}

const double* NPARPairedTest::TakePair(RecordBatch& batch) {
  if (wantsExtended) fields.Take(batch, weight);
  return differences.Of(batch);
}

const double* NPARPairedTest::TakeDifferences(RecordBatch& batch) {
  const double* d = TakePair(batch);
  if (wantsExtended) KeepDifferences(batch, d);
  weight.UseTruncated(batch, [&](auto weightAt) { differences.Count(d, batch.Size(), weightAt); });
  return d;
}

void NPARPairedTest::KeepDifferences(RecordBatch& batch, const double* d) {
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
