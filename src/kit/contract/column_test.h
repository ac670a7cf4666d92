#pragma once

#include "kit/contract/test.h"

/// A test that drives its passes by itself and takes batches.
class NPARColumnTest : public NPARTest {
 public:
  using NPARTest::NPARTest;
  QDStatus ProcessBatch(RecordBatch& batch) override = 0;
  QDStatus ProcessRecord(const Record& record) final {
    RecordBatch one(record);
    return ProcessBatch(one);
  }
};

/// A test that drives its passes by itself and takes one record at a time.
class NPARRecordTest : public NPARTest {
 public:
  using NPARTest::NPARTest;
  QDStatus ProcessRecord(const Record& record) override = 0;
  QDStatus ProcessBatch(RecordBatch& batch) final {
    for (std::size_t i = 0; i < batch.Size(); ++i) {
      const QDStatus answer = ProcessRecord(Record::View(batch.Rows().rows[i], 1));
      if (answer.IsError()) return answer;
    }
    return status;
  }
};
