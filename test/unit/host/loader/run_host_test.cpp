#include "host/loader/run_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace npar_host {
namespace {

using testing::ElementsAre;

// Three records of two fields: 0 1, 10 11, 20 21.
RecordView ThreeRecords() {
  std::vector<FieldView> fields(2);
  fields[0].numbers = std::vector{0.0, 10.0, 20.0};
  fields[1].numbers = std::vector{1.0, 11.0, 21.0};
  return {std::move(fields), 3};
}

class RunHostTest : public testing::Test {
 protected:
  HBIterator* Iterator() {
    HBIterator* iterator = nullptr;
    EXPECT_EQ(context->table->getInputIterator(context, 0, &iterator, &err), HB_OK);
    return iterator;
  }
  std::string Model() {
    HBXML* document = nullptr;
    EXPECT_EQ(context->table->getDataModel(context, 0, &document, &err), HB_OK);
    const char* text = nullptr;
    size_t length = 0;
    EXPECT_EQ(document->table->getText(document, &text, &length, &err), HB_OK);
    return {text, length};
  }

  const RecordView records = ThreeRecords();
  RunHost host{"<Parameters/>", "<DataModel/>"};
  HBContext* context = host.Context();
  int32_t err = 0;
};

TEST_F(RunHostTest, RecordsAreOfferedOnlyWhileExecuting) {
  HBIterator* iterator = nullptr;
  EXPECT_EQ(context->table->getInputIterator(context, 0, &iterator, &err), HB_FAILED);
  EXPECT_EQ(Model(), "<DataModel/>");
  host.OfferRecords("<DataModel prepared='1'/>", records);
  EXPECT_EQ(Model(), "<DataModel prepared='1'/>");
  EXPECT_EQ(context->table->getInputIterator(context, 1, &iterator, &err), HB_FAILED);
  EXPECT_EQ(context->table->getInputIterator(context, 0, &iterator, &err), HB_OK);
}

TEST_F(RunHostTest, RecordsComeOneByOneAndAgainAfterRewind) {
  host.OfferRecords("", records);
  HBIterator* iterator = Iterator();
  const void* value = nullptr;
  size_t size = 0;
  EXPECT_EQ(iterator->table->getValue(iterator, 0, &value, &size, &err), HB_FAILED);
  for (int pass = 0; pass < 2; ++pass) {
    for (int i = 0; i < 3; ++i) {
      ASSERT_EQ(iterator->table->next(iterator, &err), HB_OK);
      ASSERT_EQ(iterator->table->getValue(iterator, 1, &value, &size, &err), HB_OK);
      EXPECT_EQ(size, sizeof(double));
      EXPECT_EQ(*static_cast<const double*>(value), 10.0 * i + 1.0);
    }
    EXPECT_EQ(iterator->table->next(iterator, &err), HB_END_OF_RECORDS);
    EXPECT_EQ(iterator->table->getValue(iterator, 2, &value, &size, &err), HB_FAILED);
    EXPECT_EQ(iterator->table->rewind(iterator, &err), HB_OK);
  }
}

TEST_F(RunHostTest, BlocksHoldWholeRecordsAndEndWithNone) {
  host.OfferRecords("", records);
  HBIterator* iterator = Iterator();
  std::vector<double> buffer(5, -1.0);
  size_t count = 0;
  ASSERT_EQ(iterator->table->readBlock(iterator, buffer.data(), 5, 2, &count, &err), HB_OK);
  EXPECT_EQ(count, 2u);
  EXPECT_THAT(buffer, ElementsAre(0.0, 1.0, 10.0, 11.0, -1.0));
  ASSERT_EQ(iterator->table->readBlock(iterator, buffer.data(), 5, 2, &count, &err), HB_OK);
  EXPECT_EQ(count, 1u);
  EXPECT_EQ(buffer[1], 21.0);
  ASSERT_EQ(iterator->table->readBlock(iterator, buffer.data(), 5, 2, &count, &err), HB_OK);
  EXPECT_EQ(count, 0u);
  EXPECT_EQ(iterator->table->readBlock(iterator, buffer.data(), 5, 3, &count, &err), HB_FAILED);
}

TEST_F(RunHostTest, ColumnsAreLentWhereNoRecordIsLeftOut) {
  RecordView some = records;
  some.LeaveOut({0, 1, 0});
  for (const RecordView* view : {&records, static_cast<const RecordView*>(&some)}) {
    host.OfferRecords("", *view);
    HBIterator* iterator = Iterator();
    const double* values = nullptr;
    size_t count = 0;
    int32_t isLasting = -1;
    const auto get = [&](size_t field, size_t record) {
      return iterator->table->getColumn(iterator, field, record, &values, &count, &isLasting, &err);
    };
    ASSERT_EQ(get(1, 1), HB_OK);
    EXPECT_EQ(isLasting, view->IsWhole() ? 1 : 0);
    EXPECT_EQ(count, view->IsWhole() ? 2u : 1u);
    EXPECT_EQ(values[0], view->IsWhole() ? 11.0 : 21.0);
    EXPECT_EQ(get(1, view->IsWhole() ? 3 : 2), HB_END_OF_RECORDS);
    EXPECT_EQ(get(2, 0), HB_FAILED);
  }
}

TEST_F(RunHostTest, IdentifiersDifferAndFitASigned32BitInteger) {
  int64_t first = 0, second = 0;
  ASSERT_EQ(context->table->newIdentifier(context, &first, &err), HB_OK);
  ASSERT_EQ(RunHost("", "").Context()->table->newIdentifier(context, &second, &err), HB_OK);
  EXPECT_NE(first, second);
  EXPECT_GT(first, 0);
  EXPECT_LE(first, INT32_MAX);
}

TEST_F(RunHostTest, CollectsTheStreamOfTheResultContainerOnly) {
  HBContainerFile* container = nullptr;
  EXPECT_EQ(context->table->getOutputContainer(context, "PMML", 1, &container, &err), HB_FAILED);
  ASSERT_EQ(context->table->getOutputContainer(context, "StatXML", 1, &container, &err), HB_OK);
  const std::string bytes("a\0b", 3);
  ASSERT_EQ(
      container->table->putStream(container, nullptr, "", 0, bytes.data(), bytes.size(), &err),
      HB_OK);
  ASSERT_EQ(container->table->close(container, &err), HB_OK);
  EXPECT_EQ(host.TakeStream(), bytes);
}

TEST_F(RunHostTest, CollectsMessagesAndProgress) {
  const char* const parameters[] = {"a", "b"};
  ASSERT_EQ(
      context->table->deliverMessage(context, HB_MESSAGE_WARNING, 220014, parameters, 2, &err),
      HB_OK);
  ASSERT_EQ(context->table->deliverMessage(context, HB_MESSAGE_ERROR, 220001, nullptr, 0, &err),
            HB_OK);
  ASSERT_EQ(host.Messages().size(), 2u);
  EXPECT_FALSE(host.Messages()[0].isError);
  EXPECT_THAT(host.Messages()[0].parameters, ElementsAre("a", "b"));
  EXPECT_TRUE(host.Messages()[1].isError);
  EXPECT_EQ(host.Messages()[1].code, 220001);

  EXPECT_EQ(host.Progress()->table->report(host.Progress(), 1, 2, &err), HB_OK);
  const char* const tests[] = {"RSign", "RFriedmansTwoWayByRanks"};
  EXPECT_EQ(host.Progress()->table->beginPass(host.Progress(), tests, 2, nullptr, &err), HB_OK);
  double seen = 0.0;
  PassInHand inHand;
  host.ListenToProgress({[&](double done, double total) { seen = done / total; },
                         [&](const PassInHand& pass) { inHand = pass; }});
  EXPECT_EQ(host.Progress()->table->report(host.Progress(), 1, 2, &err), HB_OK);
  EXPECT_EQ(seen, 0.5);
  EXPECT_EQ(host.Progress()->table->beginPass(host.Progress(), tests, 2, "salary", &err), HB_OK);
  EXPECT_THAT(inHand.tests, ElementsAre("RSign", "RFriedmansTwoWayByRanks"));
  EXPECT_EQ(inHand.orderField, "salary");
  EXPECT_EQ(host.Progress()->table->beginPass(host.Progress(), tests, 1, nullptr, &err), HB_OK);
  EXPECT_EQ(inHand.orderField, "");
}

}  // namespace
}  // namespace npar_host
