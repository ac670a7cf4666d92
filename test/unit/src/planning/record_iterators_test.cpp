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
