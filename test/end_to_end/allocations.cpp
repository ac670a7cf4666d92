#include "end_to_end/allocations.h"

#include <malloc.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <new>

thread_local long allocationsLeft = -1;

namespace {

bool IsToFail() { return allocationsLeft >= 0 && allocationsLeft-- == 0; }

/// The large blocks that are allocated; takes no memory itself.
class LargeBlocks {
 public:
  static constexpr std::size_t kLarge = 65536;  // bytes

  void Add(void* place, std::size_t size) {
    if (place == nullptr || size < kLarge) return;
    const Lock lock(busy);
    const auto free = std::find_if(blocks.begin(), blocks.end(),
                                   [](const Block& each) { return each.place == nullptr; });
    if (free == blocks.end()) std::abort();
    *free = {place, size};
    sum += size;
    peak = std::max(peak, sum);
  }
  /// Its size; 0 for one that is not among them.
  std::size_t Remove(void* place) {
    if (place == nullptr || malloc_usable_size(place) < kLarge) return 0;
    const Lock lock(busy);
    const auto found = std::find_if(blocks.begin(), blocks.end(),
                                    [place](const Block& each) { return each.place == place; });
    if (found == blocks.end()) return 0;
    sum -= found->size;
    found->place = nullptr;
    return found->size;
  }
  std::size_t PeakOf(const std::function<void()>& work) {
    const std::size_t before = sum;
    peak = sum;
    work();
    return peak - before;
  }

 private:
  struct Block {
    void* place;
    std::size_t size;
  };
  struct Lock {
    explicit Lock(std::atomic_flag& flag) : flag(flag) {
      while (flag.test_and_set()) continue;
    }
    ~Lock() { flag.clear(); }
    std::atomic_flag& flag;
  };

  std::array<Block, 4096> blocks{};
  std::size_t sum = 0;
  std::size_t peak = 0;
  std::atomic_flag busy;
};

constinit LargeBlocks largeBlocks;

}  // namespace

std::size_t PeakOfLargeBlocks(const std::function<void()>& work) {
  return largeBlocks.PeakOf(work);
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
namespace {

void* Allocate(std::size_t size) {
  if (IsToFail()) throw std::bad_alloc();
  if (void* place = std::malloc(size == 0 ? 1 : size)) return place;
  throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void operator delete(void* place) noexcept { std::free(place); }
void operator delete[](void* place) noexcept { std::free(place); }
void operator delete(void* place, std::size_t) noexcept { std::free(place); }
void operator delete[](void* place, std::size_t) noexcept { std::free(place); }
#else
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void* __libc_realloc(void* place, std::size_t size);
void __libc_free(void* place);

void* malloc(std::size_t size) {
  void* place = IsToFail() ? nullptr : __libc_malloc(size);
  largeBlocks.Add(place, size);
  return place;
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
  void* place = IsToFail() ? nullptr : __libc_memalign(alignment, size);
  largeBlocks.Add(place, size);
  return place;
}
void* realloc(void* place, std::size_t size) {
  if (IsToFail()) return nullptr;
  const std::size_t former = largeBlocks.Remove(place);
  void* grown = __libc_realloc(place, size);
  if (grown == nullptr) {
    largeBlocks.Add(place, former);
  } else {
    largeBlocks.Add(grown, size);
  }
  return grown;
}
void free(void* place) {
  largeBlocks.Remove(place);
  __libc_free(place);
}
}
#endif
