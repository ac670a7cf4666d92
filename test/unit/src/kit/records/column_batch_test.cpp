#include "kit/records/column_batch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

/// Columns that come in parts of their own lengths; a value is its record's number, and the
/// column's thousandths.
class PartedColumns final : public IRecordColumns {
 public:
  struct Column {
    std::size_t partSize;
    bool isLasting;
    std::size_t size;  // records, before it breaks off
  };
  explicit PartedColumns(std::vector<Column> columns) : columns(std::move(columns)) {
    for (std::size_t c = 0; c < this->columns.size(); ++c) {
      values.emplace_back();
      for (std::size_t i = 0; i < this->columns[c].size; ++i) values[c].push_back(Value(c, i));
    }
  }
  static double Value(std::size_t column, std::size_t record) {
    return static_cast<double>(record) + static_cast<double>(column) / 1000.0;
  }

  [[nodiscard]] bool HasColumns() const override { return true; }
  [[nodiscard]] int GetRecordWidth() const override { return static_cast<int>(columns.size()); }
  bool GetPart(std::int32_t variable, std::size_t record, ColumnPart& part) override {
    const auto place = static_cast<std::size_t>(variable);
    const Column& column = columns[place];
    part = {};
    if (record >= column.size) return record == columns[0].size;
    const std::size_t end = record - record % column.partSize + column.partSize;
    part = {&values[place][record], std::min(end, column.size) - record, column.isLasting};
    return true;
  }

 private:
  std::vector<Column> columns;
  std::vector<std::vector<double>> values;
};

struct Walk {
  std::size_t records = 0;
  std::vector<std::size_t> sizes;

  Walk(PartedColumns& source, std::size_t most) {
    ColumnBatch batch(source);
    for (int times = 0; times < 2; ++times) {
      records = 0;
      sizes.clear();
      batch.StartOver();
      while (batch.Advance(most)) {
        for (std::int32_t c = 0; c < source.GetRecordWidth(); ++c) {
          const double* values = batch.Of(c);
          for (std::size_t i = 0; i < batch.Size(); ++i) {
            EXPECT_EQ(values[i], PartedColumns::Value(static_cast<std::size_t>(c), records + i));
          }
        }
        records += batch.Size();
        sizes.push_back(batch.Size());
      }
    }
  }
};

TEST(ColumnBatchTest, PartsOfAnyLengthsGiveTheirRecords) {
  constexpr std::size_t kCount = 3000;
  PartedColumns source({{1000, true, kCount}, {7, false, kCount}, {301, true, kCount}});
  const Walk usual(source, kRecordsAtOnce);
  EXPECT_EQ(usual.records, kCount);
  EXPECT_EQ(usual.sizes[0], kRecordsAtOnce);
  EXPECT_EQ(usual.sizes[3], 1000 - 3 * kRecordsAtOnce) << "to the end of the first one's part";
  // What lasts side by side may be more; what does not last is gathered.
  const Walk large(source, kCount);
  EXPECT_EQ(large.records, kCount);
  EXPECT_EQ(large.sizes[0], 301U);
}

TEST(ColumnBatchTest, ABrokenColumnEndsTheWalk) {
  PartedColumns source({{1000, true, 3000}, {1000, false, 700}});
  ColumnBatch batch(source);
  std::size_t records = 0;
  while (batch.Advance()) {
    const double* values = batch.Of(1);
    EXPECT_EQ(values[0], PartedColumns::Value(1, records));
    records += batch.Size();
  }
  EXPECT_EQ(records, 3 * kRecordsAtOnce) << "the batch in which it broke is the last";
}

}  // namespace
