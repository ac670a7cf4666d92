#include <gmock/gmock.h>

#include <random>

#include "end_to_end/allocations.h"
#include "support/loaded_component.h"
#include "support/parameters_text.h"

// What a run holds for each of many records beyond the host's own. A kept value takes 8 bytes, a
// group code 1, an order 12, a list of values or differences 8.
namespace {

constexpr std::size_t kRecords = std::size_t{1} << 20;
constexpr double kRest = 3;  // what does not grow with the records, such as the cells of a sort

/// A continuous field, and another or two groups.
struct ManyRecords : RecordingHost {
  ManyRecords(const std::string& test, bool areGroups) {
    std::mt19937_64 random(20240611);
    std::normal_distribution<double> normal;
    for (std::size_t i = 0; i < kRecords; ++i) {
      const double x = normal(random);
      records.push_back({x, areGroups ? static_cast<double>(i % 2) : normal(random) + x + 0.1});
    }
    fields = "<Field name='x' measure='continuous'/>";
    fields += areGroups ? "<Field name='y' measure='nominal' storage='string'><Value value='a'/>"
                          "<Value value='b'/></Field>"
                        : "<Field name='y' measure='continuous'/>";
    parameters = "<Parameters>" +
                 (areGroups ? ListParameter("independentVariables", {"x"}) +
                                  ListParameter("groupVariable", {"y"}) + Family("Independent")
                            : ListParameter("relatedVariables", {"x", "y"}) + Family("Related")) +
                 Selected(test) + "</Parameters>";
  }
};

struct MemoryCase {
  const char* test;
  bool areGroups;
  double bytes;  // a record
};

TEST(Memory, StaysWithinItsBoundForEachRecord) {
  if (!kAreBlocksCounted) GTEST_SKIP() << "the sanitizer has malloc for itself";
  constexpr MemoryCase kCases[] = {
      {"IMannWhitneyU", true, 9 + 12 + kRest},
      {"IMoses", true, 9 + 12 + kRest},
      {"IHodgesLehmannEstimateIndependent", true, 9 + 12 + 8 + kRest},
      {"RWilcoxonSignedRanks", false, 16 + 8 + kRest},
      {"RHodgesLehmannEstimatePairs", false, 16 + 8 + kRest},
  };
  for (const MemoryCase& row : kCases) {
    SCOPED_TRACE(row.test);
    ManyRecords host(row.test, row.areGroups);
    LoadedComponent component(host);
    ASSERT_EQ(component.Configure(), HB_OK) << component.Messages();
    const std::size_t peak =
        PeakOfLargeBlocks([&] { EXPECT_EQ(component.Begin(), HB_OK) << component.Messages(); });
    EXPECT_LE(static_cast<double>(peak) / kRecords, row.bytes);
  }
}

}  // namespace
