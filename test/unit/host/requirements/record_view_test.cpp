#include "host/requirements/record_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <span>
#include <vector>

namespace {

using namespace npar_host;
using ::testing::ElementsAre;

// Blocks of every size hold what the records hold one by one, whatever chunks the fields stand in
// and whichever records are left out.
TEST(RecordViewTest, BlocksGatherKeptRecordsAcrossChunks) {
  constexpr std::size_t kRecords = 300;
  for (const std::size_t keptOneIn : {1U, 2U, 3U, 70U}) {
    std::vector<double> values(kRecords);
    std::vector<std::int32_t> codes(kRecords);
    std::vector<std::int32_t> growing(kRecords);  // beyond what a byte holds
    std::vector<double> valueOfGrowing(kRecords + 1, -1.0);
    std::vector<std::uint8_t> isLeftOut(kRecords);
    std::vector<double> expected;
    for (std::size_t i = 0; i < kRecords; ++i) {
      values[i] = 0.5 * static_cast<double>(i);
      codes[i] = static_cast<std::int32_t>(i % 3) - 1;
      growing[i] = static_cast<std::int32_t>(i);
      valueOfGrowing[i + 1] = 0.25 * static_cast<double>(i);
      isLeftOut[i] = static_cast<std::uint8_t>(i % keptOneIn != 0);
      if (isLeftOut[i] != 0) continue;
      expected.push_back(values[i]);
      expected.push_back(i % 3 == 0 ? -1.0 : i % 3 == 1 ? 7.0 : 5.0);
      expected.push_back(valueOfGrowing[i + 1]);
    }
    std::vector<FieldView> fields(3);
    fields[0].numbers.Append(values.data(), 1, nullptr);
    fields[0].numbers.Append(values.data() + 1, 99, nullptr);
    fields[0].numbers.Append(values.data() + 100, 200, nullptr);
    fields[1].codes.Append(codes);
    fields[1].valueOfCode = {-1.0, 7.0, 5.0};
    const std::span<const std::int32_t> all(growing);
    for (std::size_t first = 0; first < kRecords; first += 50) {
      fields[2].codes.Append(all.subspan(first, 50));
    }
    fields[2].valueOfCode = valueOfGrowing;
    RecordView view(std::move(fields), kRecords);
    if (keptOneIn > 1) view.LeaveOut(isLeftOut);
    for (const std::size_t block : {1U, 2U, 64U, 1000U}) {
      std::vector<double> got;
      std::vector<double> buffer(3 * block);
      std::size_t next = 0;
      while (const std::size_t count = view.Read(next, block, buffer.data())) {
        got.insert(got.end(), buffer.begin(),
                   buffer.begin() + static_cast<std::ptrdiff_t>(3 * count));
      }
      EXPECT_EQ(got, expected) << keptOneIn << " " << block;
    }
  }
}

TEST(RecordViewTest, NumbersPassAsTheFieldSays) {
  FieldView weight;
  weight.numbers = std::vector{0.5, 1.49, kMissingNumber, 9.0};
  weight.missingCells = {9.0};
  weight.isRounded = true;
  EXPECT_FALSE(weight.IsPlain());
  std::vector<double> delivered(4);
  weight.Deliver(0, 4, delivered.data(), 1);
  EXPECT_THAT(delivered, ElementsAre(1.0, 1.0, kMissingNumber, kMissingNumber));
}

}  // namespace
