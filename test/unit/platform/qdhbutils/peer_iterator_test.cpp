#include <gmock/gmock.h>

#include "foundation/peer.h"
#include "support/recording_host.h"

namespace {

using HbHelperV1::DataHelper;
using QDCommon_700::Record;
using QDCommon_700::RecordBlock;
using QDHB_700::QDPeerIterator;

constexpr char kTwoOfThree[] =
    "<DataModel><Field name='a'/><Field name='b' role='none'/><Field name='c'/></DataModel>";
constexpr char kThree[] =
    "<DataModel><Field name='a'/><Field name='b'/><Field name='c'/></DataModel>";

/// Everything below an iterator, over `count` records (i, 1000 + i, 2000 + i).
struct Source {
  Source(const char* model, std::size_t count, bool useBlocks)
      : helper(host.Iterator(), useBlocks) {
    for (std::size_t i = 0; i < count; ++i) {
      const auto value = static_cast<double>(i);
      host.records.push_back({value, 1000 + value, 2000 + value});
    }
    std::string problem;
    std::int32_t err = 0;
    EXPECT_TRUE(parser.Parse(HbHelperV1::XMLDocument(host.Document(model)), false, problem));
    EXPECT_TRUE(adapter.BuildVarlist(&err));
    host.calls.clear();
  }
  RecordingHost host;
  DataHelper helper;
  QDHB_700::DataModelParser parser;
  QDHB_700::InputAdapter adapter{&helper, &parser, false, false, false, true, false};
};

/// The last column of every record, and a check of the first.
std::vector<double> LastColumn(QDPeerIterator& records) {
  std::vector<double> values;
  while (records.HasNext()) {
    const Record* record = records.Next();
    EXPECT_EQ((*record)[0], static_cast<double>(values.size()));
    values.push_back((*record)[record->Size() - 1]);
  }
  return values;
}

std::vector<double> LastColumnOfBlocks(QDPeerIterator& records) {
  std::vector<double> values;
  RecordBlock block;
  while (records.NextBlock(block)) {
    for (std::size_t i = 0; i < block.count; ++i) {
      values.push_back(block.rows[i][records.GetRecordWidth() - 1]);
    }
  }
  return values;
}

TEST(QDPeerIterator, DeliversAllRecordsOnEveryRoadAndAgainAfterReset) {
  std::vector<double> expected(9000);  // two full blocks and a part
  for (std::size_t i = 0; i < expected.size(); ++i) expected[i] = 2000.0 + static_cast<double>(i);
  for (const char* model : {kTwoOfThree, kThree}) {
    for (const bool useBlocks : {true, false}) {
      Source source(model, expected.size(), useBlocks);
      QDPeerIterator records(&source.helper, &source.adapter, false);
      EXPECT_EQ(records.GetRecordWidth(), model == kThree ? 3 : 2);
      EXPECT_EQ(LastColumn(records), expected);
      EXPECT_EQ(records.GetState(), 1);
      EXPECT_EQ(records.Next(), nullptr);
      EXPECT_EQ(records.Reset(), 0);
      EXPECT_EQ(LastColumnOfBlocks(records), expected);
      EXPECT_EQ(records.GetDeliveredCount(), 18000);
      EXPECT_EQ(records.GetHostError(), 0);
    }
  }
}

TEST(QDPeerIterator, RawRecordsHaveEveryField) {
  Source source(kTwoOfThree, 1, true);
  QDPeerIterator records(&source.helper, &source.adapter, true);
  ASSERT_TRUE(records.HasNext());
  const Record* record = records.Next();
  ASSERT_EQ(record->Size(), 3);
  EXPECT_EQ((*record)[1], 1000.0);
}

TEST(QDPeerIterator, ColumnsAreThoseOfTheVariables) {
  Source source(kTwoOfThree, 20, true);
  source.host.OfferColumns(false);
  source.host.mostInABlock = 7;
  HbHelperV1::DataHelper helper(source.host.Iterator(), true);
  QDPeerIterator records(&helper, &source.adapter, false);
  ASSERT_TRUE(records.HasColumns());
  QDCommon_700::ColumnPart part;
  ASSERT_TRUE(records.GetPart(1, 15, part));
  EXPECT_EQ(part.values[0], 2015.0);
  EXPECT_EQ(part.count, 5u);
  EXPECT_FALSE(part.isLasting);
  ASSERT_TRUE(records.GetPart(1, 20, part));
  EXPECT_EQ(part.count, 0u);
  EXPECT_EQ(records.GetHostError(), 0);
  source.host.FailCall("getColumn", 1);
  EXPECT_FALSE(records.GetPart(0, 0, part));
  EXPECT_EQ(records.GetHostError(), RecordingHost::kHostError);
}

TEST(QDPeerIterator, EveryHostErrorEndsThePassAndIsTold) {
  struct Case {
    const char* entry;
    int number;
    bool useBlocks;
    std::int64_t delivered;
  };
  constexpr Case kCases[] = {{"rewind", 1, true, 0},      {"readBlock", 1, true, 0},
                             {"readBlock", 2, true, 256}, {"readBlock", 3, true, 1280},
                             {"next", 1, false, 0},       {"next", 1281, false, 1280},
                             {"getValue", 3, false, 0}};  // blocks grow from 256 records
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.entry);
    Source source(kThree, 5000, row.useBlocks);
    source.host.FailCall(row.entry, row.number);
    QDPeerIterator records(&source.helper, &source.adapter, false);
    LastColumn(records);
    EXPECT_EQ(records.GetState(), 2);
    EXPECT_EQ(records.GetHostError(), RecordingHost::kHostError);
    EXPECT_EQ(records.GetDeliveredCount(), row.delivered);
    const std::size_t calls = source.host.calls.size();
    EXPECT_FALSE(records.HasNext());
    EXPECT_EQ(source.host.calls.size(), calls) << "a failed source is left alone";
    EXPECT_EQ(records.Reset(), 0);
    EXPECT_EQ(LastColumn(records).size(), 5000u) << "and may be tried again";
  }
}

TEST(QDPeerIterator, HostThatNamesNoReasonIsToldByItsResult) {
  Source source(kThree, 1, true);
  source.host.FailCall("readBlock", 1, 5, 0);
  QDPeerIterator records(&source.helper, &source.adapter, false);
  EXPECT_FALSE(records.HasNext());
  EXPECT_EQ(records.GetHostError(), 5);
}

}  // namespace
