#pragma once

#include <algorithm>

#include "kit/contract/test.h"

/// A test that drives its passes by itself and takes batches.
class NPARColumnTest : public NPARTest {
 public:
  using NPARTest::NPARTest;
  QDStatus ProcessBatch(RecordBatch& batch) override = 0;
  QDStatus ProcessRecord(const Record& record) final {
    RowBatch one(record);
    return ProcessBatch(one);
  }
};

/// A test that drives its passes by itself and takes one record at a time.
class NPARRecordTest : public NPARTest {
 public:
  using NPARTest::NPARTest;
  QDStatus ProcessRecord(const Record& record) override = 0;
  QDStatus ProcessBatch(RecordBatch& batch) final {
    std::vector<std::int64_t> read;
    GetRequiredVariables(read);
    std::int32_t weightIndex = -1;
    if (settings != nullptr)
      weightIndex =
          RecordWeight(SettingsReader(settings.get()).Index("weightVariableIndex")).Index();
    if (weightIndex >= 0) read.push_back(weightIndex);
    Record record(read.empty() ? 0
                               : static_cast<int>(*std::max_element(read.begin(), read.end())) + 1);
    for (std::size_t i = 0; i < batch.Size(); ++i) {
      for (const std::int64_t variable : read) {
        const auto place = static_cast<std::int32_t>(variable);
        record[place] = batch.Of(place)[i];
      }
      const QDStatus answer = ProcessRecord(record);
      if (answer.IsError()) return answer;
    }
    return status;
  }
};
