#include <gmock/gmock.h>

#include <random>

#include "end_to_end/allocations.h"
#include "support/loaded_component.h"
#include "support/parameters_text.h"

// What a run holds for each of many records beyond the host's own. A kept value takes 8 bytes, none
// where the host lends it; a group code 1, an order that needs no more 8, a list of values or
// differences 8.
namespace {

constexpr std::size_t kRecords = std::size_t{1} << 20;
constexpr double kRest = 3.1;  // what does not grow with the records, such as the cells of a sort

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
  /// Those of the records, which are the host's own.
  void LendColumns() {
    for (std::size_t field = 0; field < 2; ++field) {
      for (const std::vector<double>& record : records) columns[field].push_back(record[field]);
    }
    iteratorTable.getColumn = [](HBIterator*, std::size_t field, std::size_t record,
                                 const double** values, std::size_t* count, std::int32_t* isLasting,
                                 std::int32_t*) -> std::uint32_t {
      if (record >= kRecords) return HB_END_OF_RECORDS;
      *values = columns[field].data() + record;
      *count = kRecords - record;
      *isLasting = 1;
      return HB_OK;
    };
  }
  static inline std::vector<double> columns[2];
};

struct MemoryCase {
  const char* test;
  bool areGroups;
  double bytes;  // a record, with columns that the host lends
};

TEST(Memory, StaysWithinItsBoundForEachRecord) {
  if (!kAreBlocksCounted) GTEST_SKIP() << "the sanitizer has malloc for itself";
  constexpr MemoryCase kCases[] = {
      {"IMannWhitneyU", true, 1 + 8 + kRest},
      {"IMoses", true, 1 + 8 + kRest},
      {"IHodgesLehmannEstimateIndependent", true, 1 + 8 + 8 + kRest},
      {"RWilcoxonSignedRanks", false, 8 + kRest},
      {"RHodgesLehmannEstimatePairs", false, 8 + kRest},
  };
  for (const MemoryCase& row : kCases) {
    for (const bool areLent : {false, true}) {
      SCOPED_TRACE(std::string(row.test) + (areLent ? ", lent" : ""));
      ManyRecords host(row.test, row.areGroups);
      if (areLent) host.LendColumns();
      LoadedComponent component(host);
      ASSERT_EQ(component.Configure(), HB_OK) << component.Messages();
      const std::size_t peak =
          PeakOfLargeBlocks([&] { EXPECT_EQ(component.Begin(), HB_OK) << component.Messages(); });
      const double kept = areLent ? 0 : row.areGroups ? 8 : 16;
      EXPECT_LE(static_cast<double>(peak) / kRecords, row.bytes + kept);
    }
  }
}

}  // namespace
