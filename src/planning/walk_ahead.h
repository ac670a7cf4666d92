#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "planning/sorted_records.h"

/// A walk in the order of a variable for which another thread gathers the columns ahead: those
/// that were asked of the first records. Where that one is late, or not there, the walk gathers
/// what it needs itself.
class WalkAhead final : public BatchSource {
 public:
  /// The order is not taken over. Throws std::bad_alloc.
  explicit WalkAhead(const NPARSortedIterator& order);

  int Reset() override;
  RecordBatch* NextBatch() override;
  [[nodiscard]] std::size_t Count() const override { return count; }
  [[nodiscard]] int Width() const override { return order.Width(); }
  [[nodiscard]] bool MayHold(const MissingMark& mark) const override { return order.MayHold(mark); }

  /// Gathers ahead of the walk, on another thread, until the walk is at its end or ended.
  void GatherAhead();
  /// On the walk's thread: when it ends, nothing is to be gathered any more.
  class End {
   public:
    explicit End(WalkAhead& walk) noexcept : walk(walk) {}
    End(const End&) = delete;
    End& operator=(const End&) = delete;
    ~End() { walk.TellInHand(kNoChunk); }

   private:
    WalkAhead& walk;
  };

 private:
  static constexpr std::size_t kBatchesOfChunk = 16;
  static constexpr std::size_t kChunk = kBatchesOfChunk * kRecordsAtOnce;
  static constexpr std::size_t kChunksAhead = 4;
  static constexpr std::size_t kNoChunk = static_cast<std::size_t>(-1);

  /// The batches of one chunk.
  struct Slot {
    std::array<std::unique_ptr<NPARSortedIterator>, kBatchesOfChunk> views;
    std::array<RecordBatch*, kBatchesOfChunk> batches{};
    /// Twice the number of the latest chunk that somebody has begun, and 1 more when it is ready.
    std::atomic<std::size_t> state{0};
  };

  [[nodiscard]] Slot& SlotOf(std::size_t chunk) noexcept { return slots[chunk % kChunksAhead]; }
  /// False where the other thread is first.
  bool Begin(std::size_t chunk) noexcept;
  void Place(std::size_t chunk);
  void Gather(std::size_t chunk);
  void TakeChunk(std::size_t chunk);
  void TellInHand(std::size_t chunk) noexcept {
    inHand = chunk;
    inHand.notify_one();
  }

  const NPARSortedIterator& order;
  std::size_t count;
  std::array<Slot, kChunksAhead> slots;
  std::size_t next = 0;  // the record that comes next
  // Chunks are numbered from 1.
  std::atomic<std::size_t> inHand{0};
  std::vector<std::int32_t> wanted;  // columns; known from the second chunk on
  std::vector<std::int32_t> wantedTruncated;
};
