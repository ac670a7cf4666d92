#include "host/data/near_miss.h"

#include <gtest/gtest.h>

namespace {

using npar_host::NearMiss;

TEST(NearMissTest, TheClosestNameIsSuggested) {
  const std::vector<std::string> names = {"score", "Region", "x", "dose"};
  EXPECT_EQ(NearMiss("scroe", names), "; did you mean \"score\"?");  // a swap is one edit
  EXPECT_EQ(NearMiss("socer", names), "; did you mean \"score\"?");
  EXPECT_EQ(NearMiss("REGION", names), "; did you mean \"Region\"?");
  EXPECT_EQ(NearMiss("score_1", names), "; did you mean \"score\"?");
  EXPECT_EQ(NearMiss("score_10", names), "");  // three edits
  EXPECT_EQ(NearMiss("y", names), "");         // nothing in common
  EXPECT_EQ(NearMiss("doses", names), "; did you mean \"dose\"?");
  EXPECT_EQ(NearMiss(std::string(10000, 'x'), names), "");
}

}  // namespace
