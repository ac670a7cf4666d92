#pragma once

#include <memory>
#include <vector>

#include "kit/records/record_batch.h"

/// Counts records over some passes for the tests that read it.
class Tally {
 public:
  virtual ~Tally() = default;
  /// Records of the running pass. What is told of them is good until the next ones.
  virtual void Take(RecordBatch& batch) = 0;
  virtual void EndPass() = 0;
  /// As NPARTest::TakesCells, asked before each pass.
  [[nodiscard]] virtual bool TakesCells() const { return false; }
};

/// What tests of one worker count alike. Those whose keys name the same variables meet the same
/// records and get the same tally. The worker drives it through the passes of its tests: it takes
/// records before they do, and ends a pass before they do.
class SharedTallies {
 public:
  /// The tally of a key: the one that another test has, else a new one. Throws std::bad_alloc.
  template <typename Kind>
  std::shared_ptr<Kind> Find(const typename Kind::Key& key) {
    for (const auto& tally : list) {
      auto found = std::dynamic_pointer_cast<Kind>(tally);
      if (found != nullptr && found->GetKey() == key) return found;
    }
    auto made = std::make_shared<Kind>(key);
    list.push_back(made);
    return made;
  }

 private:
  std::vector<std::shared_ptr<Tally>> list;
};
