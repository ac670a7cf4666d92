#include "planning/walk_ahead.h"

#include <algorithm>

#include "kit/order/threads.h"

WalkAhead::WalkAhead(const NPARSortedIterator& order) : order(order), count(order.Count()) {
  for (Slot& slot : slots) {
    for (auto& view : slot.views) view = order.AnotherView();
  }
}

int WalkAhead::Reset() {
  next = 0;
  return count == 0 ? 1 : 0;
}

void WalkAhead::Place(std::size_t chunk) {
  Slot& slot = SlotOf(chunk);
  std::size_t first = (chunk - 1) * kChunk;
  for (std::size_t i = 0; i < kBatchesOfChunk; ++i, first += kRecordsAtOnce) {
    slot.batches[i] = &slot.views[i]->LookAt(std::min(first, count), kRecordsAtOnce);
  }
}

WalkAhead::End::~End() {
  {
    const std::lock_guard lock(walk.mutex);
    walk.inHand = kNoChunk;
  }
  walk.hasRoom.notify_one();
}

bool WalkAhead::Begin(std::size_t chunk) noexcept {
  Slot& slot = SlotOf(chunk);
  if (slot.begun >= chunk) return false;
  slot.begun = chunk;
  slot.isReady = false;
  return true;
}

void WalkAhead::Gather(std::size_t chunk) {
  Place(chunk);
  for (RecordBatch* batch : SlotOf(chunk).batches) {
    if (batch->Size() == 0) break;
    Interruption::Check();
    for (const std::int32_t variable : wantedTruncated) {
      static_cast<void>(batch->TruncatedOf(variable));
    }
    for (const std::int32_t variable : wanted) static_cast<void>(batch->Of(variable));
  }
}

void WalkAhead::GatherAhead() {
  const std::size_t chunkCount = (count + kChunk - 1) / kChunk;
  std::unique_lock lock(mutex);
  for (std::size_t chunk = 0; chunk < chunkCount;) {
    // What is asked for is known when the first chunk is done. To wake a thread takes as long as to
    // gather half a chunk: where all slots are full, half of them shall be free before.
    if (inHand < 2 || chunk + 1 >= inHand + kChunksAhead) {
      resumeAt = inHand < 2 ? 2 : chunk + 2 - kChunksAhead / 2;
      Threads::Await(lock, hasRoom, [&] { return inHand >= resumeAt; });
    }
    if (inHand == kNoChunk) return;
    chunk = std::max(chunk, inHand) + 1;
    if (chunk > chunkCount || !Begin(chunk)) continue;
    lock.unlock();
    Gather(chunk);
    lock.lock();
    SlotOf(chunk).isReady = true;
    if (chunk == inHand) hasChunk.notify_one();
  }
}

void WalkAhead::TakeChunk(std::size_t chunk) {
  std::unique_lock lock(mutex);
  if (chunk == 2) {
    const RecordBatch& ofFirst = *SlotOf(1).batches[0];
    wanted = ofFirst.FoundColumns();
    wantedTruncated = ofFirst.FoundTruncated();
  }
  inHand = chunk;
  if (chunk == resumeAt) hasRoom.notify_one();
  if (Begin(chunk)) {
    lock.unlock();
    Place(chunk);
    return;
  }
  Threads::Await(lock, hasChunk, [&] { return SlotOf(chunk).isReady; });
}

RecordBatch* WalkAhead::NextBatch() {
  Interruption::Check();
  if (next >= count) return nullptr;
  const std::size_t chunk = next / kChunk + 1;
  if (next % kChunk == 0) TakeChunk(chunk);
  RecordBatch* batch = SlotOf(chunk).batches[next % kChunk / kRecordsAtOnce];
  next += batch->Size();
  return batch;
}
