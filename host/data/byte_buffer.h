#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <string_view>

namespace npar_host {

/// Bytes that are appended in large steps, followed by zero bytes that may be read. Large ones move
/// without being copied.
class ByteBuffer {
 public:
  static constexpr std::size_t kPadding = 64;

  /// Room for `count` more bytes behind those that are there.
  char* Room(std::size_t count) {
    if (bytes == nullptr || size + count + kPadding > capacity) Grow(size + count + kPadding);
    return bytes.get() + size;
  }
  /// So many of the room were written.
  void Append(std::size_t count) { size += count; }
  /// Nothing more will come.
  void Close() {
    char* const end = Room(0);
    for (std::size_t i = 0; i < kPadding; ++i) end[i] = '\0';
  }

  [[nodiscard]] std::string_view Text() const { return {bytes.get(), size}; }

 private:
  struct Free {
    void operator()(char* memory) const { std::free(memory); }
  };

  void Grow(std::size_t wanted) {
    const std::size_t larger = std::max({wanted, 2 * capacity, kPadding});
    void* const moved = std::realloc(bytes.get(), larger);
    if (moved == nullptr) throw std::bad_alloc();
    static_cast<void>(bytes.release());
    bytes.reset(static_cast<char*>(moved));
    capacity = larger;
  }

  std::unique_ptr<char, Free> bytes;
  std::size_t size = 0;
  std::size_t capacity = 0;
};

}  // namespace npar_host
