#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <vector>

#include "foundation/names.h"
#include "kit/contract/shared_tallies.h"
#include "kit/contract/test.h"
#include "kit/records/batch_source.h"
#include "kit/records/counted_records.h"
#include "kit/records/missing.h"
#include "kit/records/order_excerpt.h"
#include "planning/cancel_pair.h"

/// Hands the records of one pass to those tests of it that can use them.
///
/// Tests that need the same variables complete form one audience: the complete records are selected
/// once for all of them, and each tally that they share takes the records before they do. Which
/// places of a record can hold an audience off is settled before the first record, so that records
/// without a missing value at these few places cost no more than their tests. Tests that can do
/// with cells get these, each audience in a walk of its own, and the records are walked for the
/// others.
class PassFeed {
 public:
  /// The variables are not taken over.
  PassFeed(const QDVarList* variables, bool analysisMissing) noexcept
      : variables(variables), analysisMissing(analysisMissing) {}

  /// Before the records: a test whose pass has begun, with the variables that must not be missing
  /// for it.
  void AddTest(NPARTest* test, std::vector<std::int64_t> required);
  /// Finds cells, ascending by a variable or in any order, for the tests that can do with them.
  /// Throws std::bad_alloc.
  void FindCells(ICountedRecords& counted, std::int32_t ascendingBy);
  /// Finds excerpts for the others, where each of them can do with one: an order that one needs
  /// serves all. Throws std::bad_alloc.
  void FindExcerpts(IOrderExcerpts& excerpts);
  /// Gives what was found.
  QDStatus WalkCells(CancelPair& cancelPair);
  /// Are there other tests?
  [[nodiscard]] bool NeedsRecords() { return !MembersOf(nullptr).empty(); }
  /// Divides these into parts that count nothing together, `most` at the most; how many there are.
  std::size_t Divide(std::size_t most);
  /// Gives a part all records from where the source stands, unless the run is cancelled. A test
  /// that returns an error gets no further record. 220012, from a test, ends the walk. Parts may
  /// walk side by side, each in a source of its own.
  QDStatus Walk(std::size_t part, BatchSource& records, CancelPair& cancelPair);
  /// The tests that have not failed, in the order in which they were added.
  [[nodiscard]] std::vector<NPARTest*> AliveTests() const;
  /// What they count together.
  [[nodiscard]] std::vector<Tally*> AliveTallies() const;

 private:
  struct Member {
    NPARTest* test;
    std::vector<std::int64_t> required;
    std::vector<MissingMark> marks;      // where a missing value holds this test off
    const BatchSource* cells = nullptr;  // which it takes, or an excerpt
    bool hasFailed = false;
  };
  struct Audience {
    std::vector<Member*> members;
    std::vector<Tally*> tallies;
    CompleteRecords complete;
  };

  /// Tests that take the same walk.
  struct Part {
    std::vector<Member*> members;
    std::list<Audience> audiences;
  };

  /// The tests that take these cells, or records for null, and have not failed.
  [[nodiscard]] std::vector<Member*> MembersOf(const BatchSource* cells);
  /// The members without a walk whose tests take one, by the variables that they require.
  template <typename IsTaker>
  [[nodiscard]] std::vector<std::vector<Member*>> Takers(IsTaker isTaker);
  /// Gives members a walk that ends with the feed, unless another variable than the given ones may
  /// hold records off.
  void GiveWalk(std::unique_ptr<BatchSource> walk, const std::vector<Member*>& takers);
  [[nodiscard]] std::vector<MissingMark> MarksOf(const Member& member,
                                                 const BatchSource& records) const;
  /// `expected`: the number of records, 0 where their walk is too short to tell.
  QDStatus WalkFor(Part& part, BatchSource& records, std::size_t expected, CancelPair& cancelPair);
  static void FormAudiences(Part& part);
  /// Has a test failed?
  static QDStatus Deliver(Part& part, RecordBatch& batch, bool& hasAnyFailed);

  const QDVarList* variables;
  bool analysisMissing;
  std::vector<Member> members;
  std::vector<std::unique_ptr<BatchSource>> cellWalks;
  std::vector<Part> parts;
};
