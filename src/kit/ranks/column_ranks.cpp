#include "kit/ranks/column_ranks.h"

#include <algorithm>

#include "kit/ranks/ties.h"
#include "kit/records/record_batch.h"

namespace {

/// Below so many records the loops over columns cost more than they save.
constexpr std::size_t kFewRecords = 8;

/// One pair of fields of each record. Doubles throughout, so that the processor takes several
/// records at a time.
void ComparePair(const double* values, const double* others, double* __restrict standing,
                 double* __restrict standingOfOthers, double* __restrict unsettled,
                 std::size_t count) noexcept {
  for (std::size_t i = 0; i < count; ++i) {
    unsettled[i] += TiesUnequally(values[i], others[i]) ? 1.0 : 0.0;
    const double side = (values[i] > others[i] ? 1.0 : 0.0) - (values[i] < others[i] ? 1.0 : 0.0);
    standing[i] += side;
    standingOfOthers[i] -= side;
  }
}

}  // namespace

ColumnRanks::ColumnRanks(std::size_t mostFields)
    : recordsAtOnce(std::clamp(kRecordsAtOnce * kMostByComparison / mostFields, std::size_t{1},
                               kRecordsAtOnce)),
      steps(mostFields * recordsAtOnce),
      standing(std::min(mostFields, kMostByComparison) * recordsAtOnce),
      unsettled(recordsAtOnce),
      single(mostFields) {}

void ColumnRanks::Rank(const std::vector<const double*>& columns, std::size_t first,
                       std::size_t count) noexcept {
  if (columns.size() > kMostByComparison || count < kFewRecords) {
    for (std::size_t i = 0; i < count; ++i) RankRecord(columns, first, i);
    return;
  }
  CompareColumns(columns, first, count);
  for (std::size_t i = 0; i < count; ++i) {
    if (unsettled[i] > 0.0) RankRecord(columns, first, i);
  }
}

void ColumnRanks::CompareColumns(const std::vector<const double*>& columns, std::size_t first,
                                 std::size_t count) noexcept {
  std::fill_n(unsettled.begin(), count, 0.0);
  for (std::size_t field = 0; field < columns.size(); ++field) {
    double* own = standing.data() + field * recordsAtOnce;
    std::fill_n(own, count, 0.0);
    for (std::size_t other = 0; other < field; ++other) {
      ComparePair(columns[field] + first, columns[other] + first, own,
                  standing.data() + other * recordsAtOnce, unsettled.data(), count);
    }
  }
  // A rank is 1 + below + equal / 2, and below + equal + above are the other fields.
  const double others = static_cast<double>(columns.size()) - 1.0;
  for (std::size_t field = 0; field < columns.size(); ++field) {
    const double* own = standing.data() + field * recordsAtOnce;
    std::int32_t* ownSteps = steps.data() + field * recordsAtOnce;
    for (std::size_t i = 0; i < count; ++i) {
      ownSteps[i] = static_cast<std::int32_t>(own[i] + others);
    }
  }
}

void ColumnRanks::RankRecord(const std::vector<const double*>& columns, std::size_t first,
                             std::size_t place) noexcept {
  for (std::size_t i = 0; i < columns.size(); ++i) single.Put(i, columns[i][first + place]);
  single.Rank(columns.size());
  for (std::size_t i = 0; i < columns.size(); ++i) {
    steps[i * recordsAtOnce + place] = static_cast<std::int32_t>(2.0 * single.RankOf(i) - 2.0);
  }
}
