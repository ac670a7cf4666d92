#include "tests/related/paired_test.h"

void NPARPairedTest::StartPass() { differences.StartHistogram(); }

void NPARPairedTest::TakeAgain(RecordBatch& batch) {
  differences.AddToHistogram(differences.Of(batch), batch.Size(), weight.TruncatedOf(batch));
}

void NPARPairedTest::Finish() { differences.EndHistogram(); }
