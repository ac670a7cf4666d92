#pragma once

#include <array>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
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
    ~End();

   private:
    WalkAhead& walk;
  };

 private:
  static constexpr std::size_t kBatchesOfChunk = 16;
  static constexpr std::size_t kChunk = kBatchesOfChunk * kRecordsAtOnce;
  static constexpr std::size_t kChunksAhead = 16;
  static constexpr std::size_t kNoChunk = static_cast<std::size_t>(-1);

  /// The batches of one chunk.
  struct Slot {
    std::array<std::unique_ptr<NPARSortedIterator>, kBatchesOfChunk> views;
    std::array<RecordBatch*, kBatchesOfChunk> batches{};
    // While the mutex is held:
    std::size_t begun = 0;  // the latest chunk that somebody has begun
    bool isReady = false;   // it is gathered
  };

  [[nodiscard]] Slot& SlotOf(std::size_t chunk) noexcept { return slots[chunk % kChunksAhead]; }
  /// False where the other thread is first; while the mutex is held.
  bool Begin(std::size_t chunk) noexcept;
  void Place(std::size_t chunk);
  void Gather(std::size_t chunk);
  void TakeChunk(std::size_t chunk);
  const NPARSortedIterator& order;
  std::size_t count;
  std::array<Slot, kChunksAhead> slots;
  std::size_t next = 0;  // the record that comes next
  std::mutex mutex;
  std::condition_variable hasRoom;   // for further chunks ahead
  std::condition_variable hasChunk;  // one is ready
  std::size_t inHand = 0;            // chunks are numbered from 1
  std::size_t resumeAt = 0;          // chunk in hand at which the other thread goes on
  std::vector<std::int32_t> wanted;  // columns; known from the second chunk on
  std::vector<std::int32_t> wantedTruncated;
};
