#include <gmock/gmock.h>

#include <array>

#include "foundation/host_helpers.h"
#include "support/recording_host.h"

namespace {

using HbHelperV1::DataHelper;

TEST(DataHelper, RecordsThatComeWithTheEndAreTaken) {
  RecordingHost host;
  host.iteratorTable.readBlock = [](HBIterator*, double* buffer, std::size_t, std::size_t,
                                    std::size_t* recordCount, std::int32_t*) -> std::uint32_t {
    *buffer = 7;
    *recordCount = 1;
    return HB_END_OF_RECORDS;
  };
  DataHelper helper(host.Iterator(), true);
  std::array<double, 4> buffer{};
  for (const char* pass : {"first", "second"}) {
    SCOPED_TRACE(pass);
    std::size_t count = 0;
    std::int32_t err = 0;
    ASSERT_EQ(helper.Rewind(&err), HB_OK);
    ASSERT_EQ(helper.ReadBlock(buffer.data(), 4, 1, &count, &err), HB_OK);
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(buffer[0], 7);
    ASSERT_EQ(helper.ReadBlock(buffer.data(), 4, 1, &count, &err), HB_OK);
    EXPECT_EQ(count, 0u) << "nothing is asked of a host that is at its end";
  }

  host.iteratorTable.getColumn = [](HBIterator*, std::size_t, std::size_t record,
                                    const double** values, std::size_t* valueCount, std::int32_t*,
                                    std::int32_t*) -> std::uint32_t {
    static constexpr double kValues[] = {7, 8};
    *values = kValues + record;
    *valueCount = 2 - record;
    return HB_END_OF_RECORDS;
  };
  std::int32_t err = 0;
  QDCommon_700::ColumnPart part;
  ASSERT_EQ(DataHelper(host.Iterator(), true).GetPart(0, 1, part, &err), HB_OK);
  ASSERT_EQ(part.count, 1u);
  EXPECT_EQ(*part.values, 8);
  ASSERT_EQ(DataHelper(host.Iterator(), true).GetPart(0, 2, part, &err), HB_OK);
  EXPECT_EQ(part.count, 0u);
}

TEST(DataHelper, AnswersThatBreakTheRulesAreRefused) {
  RecordingHost host;
  host.records = {{1, 2}};
  std::array<double, 4> buffer{};
  std::size_t count = 0;
  std::int32_t err = 0;
  host.iteratorTable.readBlock = [](HBIterator*, double*, std::size_t, std::size_t,
                                    std::size_t* recordCount, std::int32_t*) -> std::uint32_t {
    *recordCount = 3;  // one more than fits
    return HB_OK;
  };
  EXPECT_EQ(DataHelper(host.Iterator(), true).ReadBlock(buffer.data(), 4, 2, &count, &err),
            HB_FAILED);
  EXPECT_EQ(err, DataHelper::kBrokenIterator);

  err = 0;
  host.iteratorTable.getValue = [](HBIterator*, std::size_t, const void** value,
                                   std::size_t* valueSize, std::int32_t*) -> std::uint32_t {
    static constexpr float kSingle = 1.0F;
    *value = &kSingle;
    *valueSize = sizeof kSingle;
    return HB_OK;
  };
  EXPECT_EQ(DataHelper(host.Iterator(), false).ReadBlock(buffer.data(), 4, 2, &count, &err),
            HB_FAILED);
  EXPECT_EQ(err, DataHelper::kBrokenIterator);

  for (const bool hasValues : {false, true}) {
    host.iteratorTable.getColumn =
        hasValues ? [](HBIterator*, std::size_t, std::size_t, const double** values, std::size_t*,
                       std::int32_t*, std::int32_t*) -> std::uint32_t {
      static constexpr double kValue = 1.0;
      *values = &kValue;  // and none of them
      return HB_OK;
    }
    : [](HBIterator*, std::size_t, std::size_t, const double**, std::size_t* total, std::int32_t*,
         std::int32_t*) -> std::uint32_t {
        *total = 5;
        return HB_OK;
      };
    err = 0;
    QDCommon_700::ColumnPart part;
    EXPECT_EQ(DataHelper(host.Iterator(), true).GetPart(0, 0, part, &err), HB_FAILED);
    EXPECT_EQ(err, DataHelper::kBrokenIterator);
  }

  err = 0;
  EXPECT_EQ(DataHelper(nullptr, true).ReadBlock(buffer.data(), 4, 2, &count, &err), HB_FAILED);
  EXPECT_EQ(DataHelper(nullptr, true).Rewind(&err), HB_FAILED);
  EXPECT_EQ(err, DataHelper::kBrokenIterator);
}

TEST(ContainerHelper, PutsTextWithItsDescription) {
  RecordingHost host;
  HBContainerFile* container = nullptr;
  std::int32_t err = 0;
  host.contextTable.getOutputContainer(host.Context(), "K", 1, &container, &err);
  const auto helper = HbHelperV1::ContainerHelper::create(container);
  ASSERT_NE(helper, nullptr);
  EXPECT_EQ(helper->putString(nullptr, helper->constructMetadata("text/x", "f.x"), "body", &err),
            HB_OK);
  EXPECT_EQ(host.containers[0]->text, "body");
  EXPECT_EQ(host.containers[0]->metadata,
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Metadata>\n"
            "  <Entry name=\"mediaType\" value=\"text/x\" />\n"
            "  <Entry name=\"fileName\" value=\"f.x\" />\n</Metadata>\n");
  host.containerTable.putStream = nullptr;
  EXPECT_EQ(HbHelperV1::ContainerHelper::create(container), nullptr);
  EXPECT_EQ(HbHelperV1::ContainerHelper::create(nullptr), nullptr);
}

}  // namespace
