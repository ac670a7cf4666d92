#include <gmock/gmock.h>

#include "end_to_end/allocations.h"
#include "support/all_tests_host.h"
#include "support/loaded_component.h"
#include "support/schema.h"

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
