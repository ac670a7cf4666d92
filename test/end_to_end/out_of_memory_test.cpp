#include <gmock/gmock.h>

#include <cstdlib>
#include <new>

#include "support/all_tests_host.h"
#include "support/loaded_component.h"
#include "support/schema.h"

// Every allocation of this program, and of the libraries that it loads, comes through here.
namespace {

thread_local long allocationsLeft = -1;  // negative: none shall fail

bool IsToFail() { return allocationsLeft >= 0 && allocationsLeft-- == 0; }

}  // namespace

#ifdef __SANITIZE_ADDRESS__
// The sanitizer needs malloc for itself: only what is made with new fails.
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
void* malloc(std::size_t size) { return IsToFail() ? nullptr : __libc_malloc(size); }
void* aligned_alloc(std::size_t alignment, std::size_t size) {
  return IsToFail() ? nullptr : __libc_memalign(alignment, size);
}
}
#endif

namespace {

std::uint32_t ConfigureAndRun(LoadedComponent& component) {
  const std::uint32_t configured = component.Configure();
  return configured != HB_OK ? configured : component.Begin();
}

// Each allocation of a run; where the code is sanitized or not optimised, and takes ten times as
// long, each seventeenth.
#if defined(__SANITIZE_ADDRESS__) || !defined(__OPTIMIZE__)
constexpr long kStep = 17;
#else
constexpr long kStep = 1;
#endif

TEST(OutOfMemory, AnyAllocationMayFailAndTheComponentServesOn) {
  AllTestsHost calm;
  LoadedComponent steady(calm);
  ASSERT_EQ(ConfigureAndRun(steady), HB_OK) << steady.Messages();
  const std::string expected = calm.Published();

  int failedRuns = 0;
  bool isReached = true;
  for (long count = 0; isReached; count += kStep) {
    SCOPED_TRACE(count);
    AllTestsHost host;
    LoadedComponent component(host);
    ASSERT_TRUE(component.IsMade());
    allocationsLeft = count;
    const std::uint32_t result = ConfigureAndRun(component);
    isReached = allocationsLeft < 0;
    allocationsLeft = -1;
    if (result != HB_OK) {
      ++failedRuns;
      EXPECT_EQ(host.Published(), "");
    } else if (host.Published() != expected) {
      // A summary that could not be made is absent, and a test that reads it says so; anything else
      // could be done without, as the buffer of a stable sort.
      EXPECT_LT(host.Published().size(), expected.size());
      EXPECT_TRUE(IsValid(host.Published(), "statxml-7.0.xsd"));
    }
    host.containers.clear();
    host.lastIdentifier = 0;
    ASSERT_EQ(ConfigureAndRun(component), HB_OK) << component.Messages();
    EXPECT_EQ(host.Published(), expected);
  }
  EXPECT_GT(failedRuns, 100);
}

TEST(OutOfMemory, ComponentThatCannotBeMadeIs240001) {
  const LoadedLibrary& library = LoadedLibrary::Instance();
  AllTestsHost host;
  library.initialise(host.Host());
  std::uint32_t result = NPAR_FAILED;
  long count = 0;
  for (; result != HB_OK; ++count) {
    void* component = nullptr;
    std::int32_t err = 0;
    allocationsLeft = count;
    result = library.create(host.Context(), nullptr, &component, &err);
    allocationsLeft = -1;
    EXPECT_EQ(result, component == nullptr ? NPAR_FAILED : HB_OK);
    EXPECT_EQ(err, component == nullptr ? 240001 : 0);
    if (component != nullptr) library.destroy(component);
  }
  EXPECT_GT(count, 1) << "at least the first allocation was needed";
}

}  // namespace
