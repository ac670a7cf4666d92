#pragma once

#include <npar/analysis.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// A column as Arrow would hold it: each value as the bytes that stand for it, '0' or '1' for a
/// truth value, a text as itself.
struct ArrowData {
  std::string name;
  std::string format;
  std::vector<std::optional<std::string>> records;
  std::shared_ptr<ArrowData> dictionary = nullptr;  // then the records are indices
  bool isOrdered = false;
};

/// The bytes of numbers.
template <class Value>
std::vector<std::optional<std::string>> BytesOf(const std::vector<Value>& values) {
  std::vector<std::optional<std::string>> records;
  for (const Value value : values) {
    records.emplace_back(std::string(sizeof value, '\0'));
    std::memcpy(records.back()->data(), &value, sizeof value);
  }
  return records;
}

/// How columns are cut into the batches of a stream, and what stands in front of their records.
struct ArrowCut {
  std::vector<std::size_t> batches;  // their sizes; the rest is the last one. An empty one counts
  std::size_t arrayOffset = 0;       // records of junk before the values of each array
  std::size_t structOffset = 0;      // and of each batch
};

/// Columns of equal length as a stream, which can be read once. It outlives what it gives.
class ArrowStreamOfData {
 public:
  explicit ArrowStreamOfData(std::vector<ArrowData> columns, ArrowCut cut = {});
  ~ArrowStreamOfData();
  ArrowStreamOfData(const ArrowStreamOfData&) = delete;
  ArrowStreamOfData& operator=(const ArrowStreamOfData&) = delete;

  [[nodiscard]] ArrowArrayStream* Stream();
  /// Schemas, batches and streams that were handed out and not released yet.
  [[nodiscard]] int Held() const;
  /// The arrays of a batch, for tests that spoil them before they are read.
  [[nodiscard]] ArrowArray& ColumnOf(std::size_t batch, std::size_t column);

  struct State;

 private:
  std::unique_ptr<State> state;
};
