#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/names.h"
#include "kit/test.h"
#include "planning/cancel_pair.h"
#include "planning/missing.h"

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
    /// One bit for each mark that holds this test off.
    std::vector<std::uint64_t> blocking;
  };

  QDStatus WalkBlocks(IRecordBlocks& blocks, CancelPair& cancelPair);
  QDStatus WalkRecords(RecordIterator& records, CancelPair& cancelPair);
  void Prepare(int width);
  QDStatus Deliver(const Record& record);
  /// Sets the bits of the marks that a record is missing at.
  void FindMissing(const double* row);
  [[nodiscard]] bool IsHeldOff(const Member& member) const noexcept;

  const QDVarList* variables;
  bool analysisMissing;
  std::vector<Member> members;
  std::vector<MissingMark> marks;
  std::vector<std::uint64_t> missing;
};
