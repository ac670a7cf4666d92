#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace npar_host {

/// Values in the order of the records, in chunks of any length within which they stand side by
/// side. They never move or change, and copies share them.
template <typename Value>
class Chunks {
 public:
  Chunks() = default;
  Chunks(std::vector<Value> values) {  // NOLINT(google-explicit-constructor): the simplest chunks
    AppendOwned(std::move(values));
  }

  /// Adds a chunk behind the others; `owner` keeps its memory, or is empty where somebody else
  /// does.
  void Append(const Value* values, std::size_t count, std::shared_ptr<const void> owner) {
    if (count == 0) return;
    chunks.push_back({values, size, std::move(owner)});
    size += count;
  }

  void AppendOwned(std::vector<Value> values) {
    auto owner = std::make_shared<const std::vector<Value>>(std::move(values));
    Append(owner->data(), owner->size(), owner);
  }

  [[nodiscard]] std::size_t Size() const noexcept { return size; }
  /// The value of `record` and those that stand beside it, up to the end of the chunk; none behind
  /// the last record.
  [[nodiscard]] std::span<const Value> From(std::size_t record) const {
    if (record >= size) return {};
    const auto next = std::ranges::upper_bound(chunks, record, {}, &Chunk::first);
    const Chunk& chunk = *(next - 1);
    const std::size_t end = next == chunks.end() ? size : next->first;
    return {chunk.values + (record - chunk.first), end - record};
  }
  [[nodiscard]] Value operator[](std::size_t record) const { return From(record)[0]; }

  /// All in order, or those from `first` to before `end`.
  template <class Use>
  void ForEach(const Use& use) const {
    ForEach(0, size, use);
  }
  template <class Use>
  void ForEach(std::size_t first, std::size_t end, const Use& use) const {
    for (std::size_t record = first; record < end;) {
      const std::span<const Value> values = From(record);
      const std::size_t count = std::min(values.size(), end - record);
      for (std::size_t i = 0; i < count; ++i) use(values[i]);
      record += count;
    }
  }

  template <class Test>
  [[nodiscard]] bool Any(const Test& test) const {
    for (std::size_t record = 0; record < size;) {
      const std::span<const Value> values = From(record);
      if (std::ranges::any_of(values, test)) return true;
      record += values.size();
    }
    return false;
  }

 private:
  struct Chunk {
    const Value* values;
    std::size_t first;  // the number of its first record
    std::shared_ptr<const void> owner;
  };

  std::vector<Chunk> chunks;
  std::size_t size = 0;
};

}  // namespace npar_host
