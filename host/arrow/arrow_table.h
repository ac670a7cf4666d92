#pragma once

#include <npar/analysis.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/arrow/array_view.h"

namespace npar_host {

/// An array with who releases it.
class OwnedArray {
 public:
  OwnedArray() = default;
  OwnedArray(OwnedArray&& other) noexcept : array(other.array) { other.array.release = nullptr; }
  OwnedArray(const OwnedArray&) = delete;
  OwnedArray& operator=(const OwnedArray&) = delete;
  ~OwnedArray() {
    if (array.release != nullptr) array.release(&array);
  }

  ArrowArray array{};
};

/// As OwnedArray.
class OwnedSchema {
 public:
  OwnedSchema() = default;
  OwnedSchema(const OwnedSchema&) = delete;
  OwnedSchema& operator=(const OwnedSchema&) = delete;
  ~OwnedSchema() {
    if (schema.release != nullptr) schema.release(&schema);
  }

  ArrowSchema schema{};
};

/// Columns of equal length, as a stream of batches of them or one by one.
class ArrowTable {
 public:
  /// Takes all batches of a stream and releases it, whatever happens. InputError where it fails or
  /// does not hold records. `heedCancel` is called after each batch and may throw.
  void TakeStream(ArrowArrayStream& stream, const std::function<void()>& heedCancel = {});
  /// Adds a column; arrays and dictionary stay the caller's. InputError for one that can't be.
  void AddColumn(const NparColumn& column);

  [[nodiscard]] bool IsEmpty() const { return columns.empty() && !hasStream; }
  [[nodiscard]] bool HasStream() const { return hasStream; }
  /// Those of the columns, in their order; one without a name is called by its number, "column1".
  [[nodiscard]] std::vector<std::string> Names() const;
  [[nodiscard]] const ArrowSchema& ColumnAt(std::size_t index) const { return *columns[index]; }

  /// Records that lie in one array of each column.
  struct Batch {
    std::vector<const ArrowArray*> arrays;  // by column
    std::int64_t first = 0;                 // of their records
    std::int64_t count = 0;
    Validity whole;                     // of records that are null as a whole
    std::shared_ptr<const void> owner;  // of the arrays; empty: the caller
  };
  [[nodiscard]] std::size_t BatchCount() const;
  /// InputError for one that does not have the table's columns.
  [[nodiscard]] Batch BatchAt(std::size_t index) const;
  /// Gives up a batch: it is released with the last of its owners.
  void Release(std::size_t index);

 private:
  /// A column that was given by pointers, as the structs that a stream would have given.
  struct Given {
    std::string name;
    std::string format;
    std::string entryFormat;
    ArrowSchema schema{};
    ArrowSchema entrySchema{};
    ArrowArray array{};
    ArrowArray entries{};
    const void* buffers[3] = {};
    const void* entryBuffers[3] = {};
  };

  std::vector<const ArrowSchema*> columns;
  bool hasStream = false;
  std::unique_ptr<OwnedSchema> schema;            // of the stream
  std::vector<std::shared_ptr<OwnedArray>> held;  // its batches; null once released
  std::vector<std::unique_ptr<Given>> given;
};

}  // namespace npar_host
