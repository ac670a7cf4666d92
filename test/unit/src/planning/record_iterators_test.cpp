#include "planning/record_iterators.h"

#include <gtest/gtest.h>

#include <limits>
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
      InitialDataReader reader(InitialDataReader::kBlockSize, source, false, {0, 1}, &variables);
      ASSERT_EQ(reader.Read(), QDStatus());
      EXPECT_EQ(reader.Count(), count);
      NParMemoIterator memo(&reader);
      EXPECT_EQ(Walk(memo, 0), expected);
      static_cast<void>(memo.Reset());
      EXPECT_EQ(WalkBlocks(memo, 0), expected);
    }
  }
}

TEST(InitialDataReader, RaisesABlockSizeThatIsNoPowerOfTwo) {
  const QDVarList variables = TwoVariables();
  for (const std::int32_t blockSize : {-1, 0, 1, 3, 4}) {
    MemoryRecords source(Numbered(9));
    InitialDataReader reader(blockSize, &source, false, {}, &variables);
    ASSERT_EQ(reader.Read(), QDStatus());
    for (std::size_t i = 0; i < 9; ++i) {
      EXPECT_EQ(reader.Records().Column(0).ValueAt(i), static_cast<double>(i)) << blockSize;
    }
  }
}

TEST(InitialDataReader, ReportsWhyNothingIsKept) {
  const QDVarList variables = TwoVariables();
  InitialDataReader nowhere(2048, nullptr, false, {}, &variables);
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
  InitialDataReader reader(2048, &source, false, {}, &variables);
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
    EXPECT_EQ(kept.reader->Count(), row.code == 0 ? 2 : 1) << row.weight;
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
  NParMemoIterator memo(kept.reader.get());
  EXPECT_EQ(Walk(memo, 0), (std::vector<double>{1, -1, 2}));
}

TEST(NParMemoIterator, TellsItsStateAndStartsOver) {
  const Kept kept(TwoVariables(), Numbered(2));
  NParMemoIterator memo(kept.reader.get());
  EXPECT_EQ(memo.GetState(), 0);
  EXPECT_EQ(Walk(memo, 0), (std::vector<double>{0, 1}));
  EXPECT_EQ(memo.GetState(), 1);
  EXPECT_EQ(memo.Next(), nullptr);
  EXPECT_EQ(memo.Reset(), 0);
  EXPECT_EQ((*memo.Next())[0], 0);
}

TEST(NParMemoIterator, JumpsForwardOrToTheEnd) {
  const Kept kept(TwoVariables(), Numbered(5));
  const NParMemoIterator memo(kept.reader.get());
  NParMemoIterator last = memo.Jump(4);
  EXPECT_EQ(Walk(last, 0), (std::vector<double>{4}));
  NParMemoIterator ended = memo.Jump(5);
  EXPECT_FALSE(ended.HasNext());
  EXPECT_FALSE(ended.Jump(0).HasNext());
}

}  // namespace
