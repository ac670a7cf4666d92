#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <tuple>
#include <vector>

#include "kit/records/record_batch.h"

class GroupTally;
class TwoGroupTally;

/// What tests of one worker count alike. Those whose keys name the same variables meet the same
/// records and get the same tally; each drives it through its passes as if it were its own.
class SharedTallies {
 public:
  /// The tally of a key: the one that another test has, else a new one. `shared` is null for a test
  /// that runs alone. Throws std::bad_alloc.
  template <typename Tally>
  static std::shared_ptr<Tally> Find(SharedTallies* shared, const typename Tally::Key& key) {
    if (shared == nullptr) return std::make_shared<Tally>(key);
    auto& list = std::get<std::vector<std::shared_ptr<Tally>>>(shared->lists);
    const auto found = std::find_if(list.begin(), list.end(),
                                    [&key](const auto& tally) { return tally->GetKey() == key; });
    if (found != list.end()) return *found;
    list.push_back(std::make_shared<Tally>(key));
    return list.back();
  }

 private:
  std::tuple<std::vector<std::shared_ptr<GroupTally>>, std::vector<std::shared_ptr<TwoGroupTally>>>
      lists;
};

/// How far a tally has come, whichever of its tests drove it there.
class TallyProgress {
 public:
  /// False for records that a test of this pass brought before.
  bool Reaches(const RecordBatch& batch) noexcept {
    if (batch.Number() != 0 && batch.Number() == latestNumber) return false;
    latestNumber = batch.Number();
    return true;
  }
  /// Is this the first of the tests to end that pass, counted from 0?
  bool Ends(std::int32_t pass) noexcept {
    if (pass < passesDone) return false;
    ++passesDone;
    latestNumber = 0;
    return true;
  }
  [[nodiscard]] std::int32_t PassesDone() const noexcept { return passesDone; }

 private:
  std::int32_t passesDone = 0;
  std::uint64_t latestNumber = 0;
};
