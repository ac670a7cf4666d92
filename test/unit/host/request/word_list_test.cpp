#include "host/request/word_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/data/join_words.h"

namespace npar_host {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(WordListTest, BackslashKeepsASeparatorInsideAWord) {
  const auto words = SplitWords(R"(a\,b,c\\,d)", ',');
  ASSERT_THAT(words, ElementsAre(R"(a\,b)", R"(c\\)", "d"));
  EXPECT_EQ(Unescape(words[0]), "a,b");
  EXPECT_EQ(Unescape(words[1]), "c\\");
}

TEST(WordListTest, EmptyWordsCountAndAnEmptyTextHasNone) {
  EXPECT_THAT(SplitWords("a,,b,", ','), ElementsAre("a", "", "b", ""));
  EXPECT_THAT(SplitWords("", ','), IsEmpty());
}

TEST(WordListTest, CutAtTakesTheFirstUnescapedSeparator) {
  std::string head, tail;
  EXPECT_TRUE(CutAt(R"(a\=b=c=d)", '=', head, tail));
  EXPECT_EQ(head, R"(a\=b)");
  EXPECT_EQ(tail, "c=d");
  EXPECT_FALSE(CutAt("abc", '=', head, tail));
  EXPECT_EQ(head, "abc");
  EXPECT_EQ(tail, "");
}

TEST(WordListTest, JoinWordsReadsAsASentence) {
  EXPECT_EQ(JoinWords({"a"}), "a");
  EXPECT_EQ(JoinWords({"a", "b", "c"}), "a, b or c");
  EXPECT_EQ(JoinWords({"a", "b"}, " and "), "a and b");
}

TEST(WordListTest, ABackslashAtTheEndStaysItself) { EXPECT_EQ(Unescape("a\\"), "a\\"); }

}  // namespace
}  // namespace npar_host
