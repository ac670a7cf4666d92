#pragma once

#include "kit/contract/test.h"
#include "kit/records/record_batch.h"

/// A test that takes many records at a time, by batch. It defines no ProcessRecord of its own:
/// a single record comes as a batch of one.
class NPARColumnTest : public NPARTest {
 public:
  using NPARTest::NPARTest;

  /// As ProcessRecord for each of the records in turn, up to the first that answers an error.
  virtual QDStatus ProcessBatch(RecordBatch& batch) = 0;
  QDStatus ProcessRecord(const Record& record) final {
    RecordBatch one(record);
    return ProcessBatch(one);
  }
};
