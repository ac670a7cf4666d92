#include "host/cli/test_registry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace npar_host {
namespace {

TEST(TestRegistryTest, NamesAreThoseOfTheCommandLine) {
  EXPECT_THAT(TestNames(), testing::ElementsAre(
                               "binomial", "chi-square", "ks-normal", "ks-uniform", "ks-poisson",
                               "ks-exponential", "runs", "wilcoxon", "sign", "wilcoxon-pairs",
                               "mcnemar", "marginal-homogeneity", "cochran-q", "friedman",
                               "kendall-w", "hodges-lehmann-pairs", "mann-whitney", "ks-two-sample",
                               "wald-wolfowitz", "moses", "median", "kruskal-wallis",
                               "jonckheere-terpstra", "hodges-lehmann-groups"));
}

// The first letter of a document key names the family: a test that stood in the wrong one would
// be skipped by the component.
TEST(TestRegistryTest, DocumentKeysAreUniqueAndBelongToTheirFamily) {
  std::set<std::string> keys;
  for (const TestDescription& test : AllTests()) {
    const std::string key = test.documentKey;
    EXPECT_TRUE(keys.insert(key).second) << key;
    const char letter = test.family == TestFamily::OneSample ? 'O'
                        : test.family == TestFamily::Related ? 'R'
                                                             : 'I';
    EXPECT_EQ(key.front(), letter) << key;
  }
}

TEST(TestRegistryTest, OptionsAreWholeAndUniqueWithinATest) {
  for (const TestDescription& test : AllTests()) {
    std::set<std::string> names;
    for (const TestOption& option : test.options) {
      SCOPED_TRACE(std::string(test.name) + " " + option.name);
      EXPECT_TRUE(names.insert(option.name).second);
      EXPECT_STRNE(option.help, "");
      EXPECT_STRNE(option.defaultText, "");
      const bool takesWords = option.kind == OptionKind::Word || option.kind == OptionKind::Words;
      EXPECT_EQ(option.documentKey == nullptr, takesWords);
      EXPECT_EQ(option.words.empty(), !takesWords && option.kind != OptionKind::NumberOrWord);
    }
  }
}

TEST(TestRegistryTest, UnknownNamesAreNotFound) {
  EXPECT_EQ(FindTest("t-test"), nullptr);
  EXPECT_EQ(FindOption(*FindTest("sign"), "p"), nullptr);
}

}  // namespace
}  // namespace npar_host
