#include <gmock/gmock.h>

#include <functional>
#include <new>
#include <string>

#include "end_to_end/allocations.h"
#include "host/data/data_text.h"
#include "host/data/model.h"
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
      EXPECT_THAT(component.err, testing::Not(testing::AnyOf(240011, 240013)))
          << "no document is at fault";
      EXPECT_EQ(host.OpenDocuments(), 0);
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

std::string ModelOfManyCategories() {
  npar_host::DataModel model;
  model.fields.emplace_back().name = "group";
  for (int i = 0; i < 4000; ++i) {
    model.fields[0].categories.emplace_back().text = "category " + std::to_string(i);
  }
  return npar_host::WriteModel(model);
}

std::string TextOfPacked(const char* file) {
  return std::string(
      npar_host::DataText(std::string(NPAR_SOURCE_DIR "/test/corpus/") + file).Text());
}

TEST(OutOfMemory, WhatTheHostReadsAndWritesIsWholeOrTheMemoryIsToldOf) {
  const std::function<std::string()> kWorks[] = {
      ModelOfManyCategories,
      [] { return TextOfPacked("packed.csv.gz"); },
      [] { return TextOfPacked("packed.csv.zst"); },
  };
  for (const auto& work : kWorks) {
    const std::string whole = work();
    bool isReached = true;
    int failures = 0;
    for (long count = 0; isReached; ++count) {
      allocationsLeft = count;
      try {
        EXPECT_TRUE(work() == whole) << "without its allocation " << count << " of " << whole[0];
      } catch (const std::bad_alloc&) {
        ++failures;
      }
      isReached = allocationsLeft < 0;
      allocationsLeft = -1;
    }
    EXPECT_GT(failures, 0);
  }
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
