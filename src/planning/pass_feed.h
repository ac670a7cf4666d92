#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/names.h"
#include "kit/contract/test.h"
#include "kit/records/missing.h"
#include "kit/records/record_batch.h"
#include "kit/records/selected_records.h"
#include "planning/cancel_pair.h"

/// Hands the records of one pass to those tests of it that can use them.
///
/// Which places of a record can hold a test off is settled before the first record, so that a
/// record without a missing value at these few places costs no more than its tests.
class PassFeed {
 public:
  /// The variables are not taken over.
  PassFeed(const QDVarList* variables, bool analysisMissing) noexcept
      : variables(variables), analysisMissing(analysisMissing) {}

  /// Before the records: a test with the variables that must not be missing for it.
  void AddTest(NPARTest* test, const std::vector<std::int64_t>& required);
  /// All records from where the iterator stands, unless the run is cancelled. A test that returns
  /// an error gets no further record. 220012, from a test, ends the walk.
  QDStatus Walk(RecordIterator& records, CancelPair& cancelPair);
  /// The tests that have not failed, in the order in which they were added.
  [[nodiscard]] std::vector<NPARTest*> AliveTests() const;

 private:
  struct Member {
    NPARTest* test;
    std::vector<std::int64_t> required;
    /// Where a missing value holds this test off.
    std::vector<MissingMark> marks;
    bool needsSameAsBefore = false;  // as the member before it
    bool hasFailed = false;
  };

  QDStatus WalkColumns(IColumnBlocks& blocks, CancelPair& cancelPair);
  QDStatus WalkBlocks(IRecordBlocks& blocks, CancelPair& cancelPair);
  QDStatus WalkRecords(RecordIterator& records, CancelPair& cancelPair);
  void Prepare(int recordWidth, const IColumnBlocks* columnSource = nullptr);
  void CompareNeeds();
  /// The records to each test in turn.
  QDStatus Deliver(RecordBatch& batch);
  QDStatus DeliverTo(const Member& member, RecordBatch& batch) const;
  /// The records in which nothing is missing at these places.
  RecordBatch& KeepComplete(RecordBatch& batch, const std::vector<MissingMark>& needed);

  const QDVarList* variables;
  bool analysisMissing;
  std::vector<Member> members;
  int width = 0;                   // of the records
  std::vector<MissingMark> marks;  // of all members
  std::uint64_t deliveries = 0;
  std::vector<std::uint8_t> isIncomplete;  // by record in hand
  SelectedRecords completeRecords;
};
