#include "planning/walk_ahead.h"

#include <algorithm>
#include <thread>

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

bool WalkAhead::Begin(std::size_t chunk) noexcept {
  std::atomic<std::size_t>& state = SlotOf(chunk).state;
  std::size_t before = state.load();
  return before < 2 * chunk && state.compare_exchange_strong(before, 2 * chunk);
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
  SlotOf(chunk).state = 2 * chunk + 1;
}

void WalkAhead::GatherAhead() {
  const std::size_t chunkCount = (count + kChunk - 1) / kChunk;
  std::size_t chunk = 0;
  for (std::size_t current = inHand; current != kNoChunk && chunk < chunkCount; current = inHand) {
    // What is asked for is known when the first chunk is done.
    if (current < 2 || chunk + 1 >= current + kChunksAhead) {
      inHand.wait(current);
      continue;
    }
    chunk = std::max(chunk, current) + 1;
    if (chunk <= chunkCount && Begin(chunk)) Gather(chunk);
  }
}

void WalkAhead::TakeChunk(std::size_t chunk) {
  if (chunk == 2) {
    const RecordBatch& ofFirst = *SlotOf(1).batches[0];
    wanted = ofFirst.FoundColumns();
    wantedTruncated = ofFirst.FoundTruncated();
  }
  TellInHand(chunk);
  if (Begin(chunk)) {
    Place(chunk);
    return;
  }
  while (SlotOf(chunk).state != 2 * chunk + 1) {
    Interruption::Check();
    std::this_thread::yield();
  }
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
