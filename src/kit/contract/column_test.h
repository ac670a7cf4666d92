#pragma once

#include "kit/contract/test.h"
#include "kit/records/record_columns.h"

/// A test that takes many records at a time, by columns. It defines no ProcessRecord of its own:
/// a single record comes as columns of one value.
class NPARColumnTest : public NPARTest {
 public:
  using NPARTest::NPARTest;

  /// As ProcessRecord for each of the records in turn, up to the first that answers an error.
  virtual QDStatus ProcessColumns(RecordColumns& columns) = 0;
  QDStatus ProcessRecord(const Record& record) final {
    RecordColumns one(record);
    return ProcessColumns(one);
  }
};
