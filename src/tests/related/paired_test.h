#pragma once

#include "kit/contract/test.h"
#include "kit/groups/paired_differences.h"

/// What the tests of the differences of two fields do alike: a further pass makes the histogram of
/// the differences, whose range the first one found.
class NPARPairedTest : public NPARTest {
 public:
  using NPARTest::NPARTest;

 protected:
  void StartPass() override;
  void TakeAgain(RecordBatch& batch) override;
  void Finish() override;

  PairedDifferences differences;
};
