#include "planning/record_iterators.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <map>
#include <new>

#include "support/kept_records.h"

namespace {

constexpr double kMissing = QDMV::gMissingValue;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

TEST(InitialDataReader, KeepsEveryRecordOnBothSidesOfABlockEdge) {
  for (const int count : {1, 255, 256, 257, 2047, 2048, 2049, 4097}) {
    SCOPED_TRACE(count);
    std::vector<double> expected;
    for (int i = 0; i < count; ++i) expected.push_back(i);
    const QDVarList variables = TwoVariables();
    MemoryRecords single(Numbered(count));
    MemoryBlocks blocks(Numbered(count));
    OnePassRecords once(Numbered(count));
    for (RecordIterator* source : std::initializer_list<RecordIterator*>{&single, &blocks, &once}) {
      IteratorBatches batches(*source);
      InitialDataReader reader(&batches, false, {0, 1}, &variables);
      ASSERT_EQ(reader.Read(), QDStatus());
      EXPECT_EQ(reader.Count(), count);
      NParMemoIterator memo(reader.Records());
      EXPECT_EQ(Walk(memo, 0), expected);
      EXPECT_EQ(WalkBatches(memo, 0), expected);
    }
  }
}

/// Columns in parts of some length, each in memory of its own that the next one of a column takes
/// over unless they last.
class ColumnRecords final : public MultiPassRecordIter, public IRecordColumns {
 public:
  ColumnRecords(std::vector<std::vector<double>> columns, std::size_t partSize, bool areLasting)
      : columns(std::move(columns)), partSize(partSize), areLasting(areLasting) {}
  bool HasNext() override { return false; }
  const Record* Next() override { return nullptr; }
  int GetState() const override { return 0; }
  int Reset() override { return 0; }
  bool HasColumns() const override { return true; }
  bool GetPart(std::int32_t variable, std::size_t record, ColumnPart& part) override {
    const std::vector<double>& column = columns[static_cast<std::size_t>(variable)];
    const std::size_t first = record - record % partSize;
    const std::size_t size = std::min(partSize, column.size() - first);
    std::vector<double>& memory = parts[{variable, areLasting ? first : 0}];
    memory.assign(column.data() + first, column.data() + first + size);
    part = {memory.data() + (record - first), size - (record - first), areLasting};
    return true;
  }
  int GetRecordWidth() const override { return static_cast<int>(columns.size()); }

  std::map<std::pair<std::int32_t, std::size_t>, std::vector<double>> parts;

 private:
  std::vector<std::vector<double>> columns;
  std::size_t partSize;
  bool areLasting;
};

// Whole numbers that take a byte until one does not, and others; parts that end within blocks.
TEST(InitialDataReader, KeepsColumnsInPartsOfAnyLength) {
  for (const int count : {1, 255, 257, 2048, 2049, 9000}) {
    std::vector<double> values;
    std::vector<double> codes;
    for (int i = 0; i < count; ++i) {
      values.push_back(i + 0.5);
      codes.push_back(i < 3000 ? i % 7 : i);
    }
    for (const std::size_t partSize : {100U, 2048U, 3000U, 10000U}) {
      for (const bool areLasting : {false, true}) {
        SCOPED_TRACE(testing::Message() << count << " " << partSize << " " << areLasting);
        ColumnRecords source({values, codes}, partSize, areLasting);
        const QDVarList variables = TwoVariables();
        IteratorBatches batches(source);
        InitialDataReader reader(&batches, false, {0, 1}, &variables);
        ASSERT_EQ(reader.Read(), QDStatus());
        NParMemoIterator memo(reader.Records());
        EXPECT_EQ(WalkBatches(memo, 0), values);
        EXPECT_EQ(WalkBatches(memo, 1), codes);
        EXPECT_EQ(WalkBatches(batches, 1), codes) << "and once more";
        // A block that lies within a part stands where it was lent, but for the first: that many
        // values show that there are too many to be counted.
        constexpr std::size_t kSecond = KeptRecords::kBlockSize;
        if (!areLasting || values.size() < 2 * kSecond) continue;
        const std::size_t first = kSecond - kSecond % partSize;
        source.parts[{0, first}][kSecond - first] = -1.0;
        const bool isWithin = 2 * kSecond <= first + partSize;
        EXPECT_EQ(WalkBatches(memo, 0)[kSecond], isWithin ? -1.0 : values[kSecond]);
      }
    }
  }
}

TEST(InitialDataReader, ReportsWhyNothingIsKept) {
  const QDVarList variables = TwoVariables();
  InitialDataReader nowhere(nullptr, false, {}, &variables);
  EXPECT_EQ(nowhere.Read(), QDStatus(220005));
  EXPECT_EQ(Kept(TwoVariables(), {}).status, QDStatus(220003));
  EXPECT_EQ(Kept(TwoVariables(), {{1, kMissing}, {kMissing, 1}}, true).status, QDStatus(220003));
}

TEST(InitialDataReader, TurnsALackOfMemoryIntoAStatus) {
  class Exhausted final : public RecordIterator {
   public:
    bool HasNext() override { return true; }
    const Record* Next() override { throw std::bad_alloc(); }
    int GetState() const override { return 0; }
  } source;
  const QDVarList variables = TwoVariables();
  IteratorBatches batches(source);
  InitialDataReader reader(&batches, false, {}, &variables);
  EXPECT_EQ(reader.Read(), QDStatus(220002));
}

TEST(InitialDataReader, RefusesAWeightAbove32Bits) {
  struct Case {
    double weight;
    std::int32_t code;
  };
  for (const Case& row :
       {Case{2147483647.0, 0}, Case{2147483647.5, 220026}, Case{kNan, 220026}, Case{kMissing, 0}}) {
    const Kept kept(VariableListBuilder().Continuous("x").Weight("w").Build(),
                    {{1, 1}, {1, row.weight}});
    EXPECT_EQ(kept.status.GetErrorCode(), row.code) << row.weight;
  }
}

TEST(InitialDataReader, SkipsRecordsByTheMissingMarkOfTheKindAndOtherGoesWithTheCategories) {
  const Kept kept(VariableListBuilder()
                      .Continuous("c")
                      .Nominal("s", {"a"})
                      .NominalNumbers("n", {1})
                      .Other("o")
                      .Build(),
                  {{1, 0, 0, 5},
                   {kMissing, 0, 0, 5},  // dropped
                   {-1, 0, 0, 5},
                   {1, -1, 0, 5},  // dropped
                   {1, 0, -1, 5},  // dropped
                   {2, 0, 0, kMissing},
                   {1, 0, 0, -1}},  // dropped
                  true);
  NParMemoIterator memo(kept.reader->Records());
  EXPECT_EQ(Walk(memo, 0), (std::vector<double>{1, -1, 2}));
}

TEST(NParMemoIterator, TellsItsStateAndStartsOver) {
  const Kept kept(TwoVariables(), Numbered(2));
  NParMemoIterator memo(kept.reader->Records());
  EXPECT_EQ(memo.GetState(), 0);
  EXPECT_EQ(Walk(memo, 0), (std::vector<double>{0, 1}));
  EXPECT_EQ(memo.GetState(), 1);
  EXPECT_EQ(memo.Next(), nullptr);
  EXPECT_EQ(memo.Reset(), 0);
  EXPECT_EQ((*memo.Next())[0], 0);
}

}  // namespace
