#include "host/loader/component.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace npar_host {
namespace {

struct Row {
  const char* path;
  const char* says;
};

TEST(ComponentLibraryTest, WhatIsNoComponentIsRefusedWithTheReason) {
  const Row rows[] = {
      {"no/such/libnpar.so", "there is no component at no/such/libnpar.so"},
      {"test", "there is no component at test"},
      {"CMakeLists.txt", "cannot load the component CMakeLists.txt"},
      {NPAR_BUILD_DIR "/lib/libqdcommon700r.so", "does not export hb_create_component"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.path);
    EXPECT_THAT([&] { ComponentLibrary library(row.path); },
                testing::ThrowsMessage<ComponentError>(testing::HasSubstr(row.says)));
  }
}

}  // namespace
}  // namespace npar_host
