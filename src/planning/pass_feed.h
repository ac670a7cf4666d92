#pragma once

#include <cstdint>
#include <list>
#include <vector>

#include "foundation/names.h"
#include "kit/contract/shared_tallies.h"
#include "kit/contract/test.h"
#include "kit/records/batch_source.h"
#include "kit/records/missing.h"
#include "planning/cancel_pair.h"

/// Hands the records of one pass to those tests of it that can use them.
///
/// Tests that need the same variables complete form one audience: the complete records are selected
/// once for all of them, and each tally that they share takes the records before they do. Which
/// places of a record can hold an audience off is settled before the first record, so that records
/// without a missing value at these few places cost no more than their tests.
class PassFeed {
 public:
  /// The variables are not taken over.
  PassFeed(const QDVarList* variables, bool analysisMissing) noexcept
      : variables(variables), analysisMissing(analysisMissing) {}

  /// Before the records: a test whose pass has begun, with the variables that must not be missing
  /// for it.
  void AddTest(NPARTest* test, std::vector<std::int64_t> required);
  /// All records from where the source stands, unless the run is cancelled. A test that returns an
  /// error gets no further record. 220012, from a test, ends the walk.
  QDStatus Walk(BatchSource& records, CancelPair& cancelPair);
  /// The tests that have not failed, in the order in which they were added.
  [[nodiscard]] std::vector<NPARTest*> AliveTests() const;
  /// What they count together.
  [[nodiscard]] std::vector<Tally*> AliveTallies() const;

 private:
  struct Member {
    NPARTest* test;
    std::vector<std::int64_t> required;
    std::vector<MissingMark> marks;  // where a missing value holds this test off
    bool hasFailed = false;
  };
  struct Audience {
    std::vector<Member*> members;
    std::vector<Tally*> tallies;
    CompleteRecords complete;
  };

  void FindMarks(const BatchSource& records);
  void FormAudiences();
  QDStatus Deliver(RecordBatch& batch);

  const QDVarList* variables;
  bool analysisMissing;
  std::vector<Member> members;
  std::list<Audience> audiences;
};
