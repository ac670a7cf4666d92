#include "planning/record_iterators.h"

#include <algorithm>
#include <utility>

#include "catalogue/run.h"
#include "kit/contract/allocation.h"
#include "kit/contract/stage_progress.h"
#include "kit/order/threads.h"

namespace {

constexpr double kLargestWeight = 2147483647.0;

/// What the host says that it will hand over.
std::size_t ExpectedCount(const QDVarList& variables) {
  return static_cast<std::size_t>(
      std::max(TruncateToInt64(variables.GetUnWeightedCount()), std::int64_t{0}));
}

}  // namespace

InitialDataReader::InitialDataReader(BatchSource* source, bool skipMissing,
                                     std::vector<std::int32_t> variableList,
                                     const QDVarList* variables)
    : source(source),
      skipMissing(skipMissing),
      variableList(std::move(variableList)),
      variables(variables) {}

QDStatus InitialDataReader::Read() {
  if (source == nullptr) return QDStatus(catalogue::run::kNoSortedData);
  return GuardAllocation(kNoMemory, [this] {
    static_cast<void>(source->Reset());  // a source that stands nowhere has no record
    bool isFirst = true;
    WalkProgress progress(ExpectedCount(*variables));
    // Whether a field has few values shows in the first records, which come one batch by one.
    const auto nextBatch = [this] {
      const bool isLarge = records.Count() >= KeptRecords::kBlockSize && Threads::Count() > 1;
      return isLarge ? source->NextLargeBatch() : source->NextBatch();
    };
    while (RecordBatch* batch = nextBatch()) {
      Interruption::Check();
      progress.Step(batch->Size());
      if (std::exchange(isFirst, false)) Prepare();
      const QDStatus status = Keep(*batch);
      if (status.IsError()) return status;
    }
    return Count() == 0 ? QDStatus(catalogue::run::kNoData) : QDStatus();
  });
}

void InitialDataReader::Prepare() {
  records.SetWidth(source->Width());
  weightIndex = variables->GetFreqWeightVariable();
  if (weightIndex >= source->Width()) weightIndex = -1;
  if (!skipMissing) return;
  for (const std::int32_t index : variableList) {
    const IQDVariable* variable = variables->GetVarAt(index);
    if (variable == nullptr || index >= source->Width()) continue;
    // Kind Other goes with the categories here, though a pass over the records takes it with the
    // continuous variables: hosts rely on it.
    const bool isOther = variable->GetType() == VariableKind::Other;
    const auto missing = isOther ? QDMV::gMissingCategory : MissingValueOf(variable->GetType());
    if (missing) marks.push_back({index, *missing});
  }
}

QDStatus InitialDataReader::Keep(RecordBatch& batch) {
  if (weightIndex >= 0) {
    const double* weights = batch.Of(weightIndex);
    const auto fits = [](double weight) { return weight <= kLargestWeight; };
    if (!std::all_of(weights, weights + batch.Size(), fits))
      return QDStatus(catalogue::run::kWeightTooLarge);
  }
  records.Append(complete.Select(batch, marks));
  return QDStatus();
}

const double* NParMemoIterator::FindColumn(std::int32_t variable) {
  // Batches do not reach over the edge of a block, within which a column stands side by side.
  static_assert(KeptRecords::kBlockSize % kRecordsAtOnce == 0);
  const KeptColumn& column = Column(variable);
  return column.IsWide() ? column.Values(First(), InHand(), nullptr) : nullptr;
}

void NParMemoIterator::GatherColumn(std::int32_t variable, double* values) {
  static_cast<void>(Column(variable).Values(First(), InHand(), values));
}

bool NParMemoIterator::GatherTruncated(std::int32_t variable, std::int32_t* values) {
  if (!Column(variable).IsNarrow()) return false;
  const std::uint8_t* bytes = Column(variable).Bytes(First());
  for (std::size_t i = 0; i < InHand(); ++i) values[i] = KeptColumn::CodeOf(bytes[i]);
  return true;
}
