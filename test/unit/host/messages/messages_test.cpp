#include "host/messages/messages.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <optional>
#include <regex>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "catalogue/catalogue.h"
#include "support/process.h"

namespace {

using namespace npar_host;

std::optional<std::string> Name(std::size_t index) {
  const std::vector<std::string> names = {"before", "after; \"%1\"", "1999"};
  return index < names.size() ? std::optional(names[index]) : std::nullopt;
}

TEST(MessagesTest, EveryCodeInTheSourcesHasAText) {
  // A number that ends in 00 is the base from which a test counts its codes.
  const std::regex code("\\b(22[0-5]|240)[0-9](?!00)[0-9]{2}\\b");
  std::map<std::int32_t, std::string> missing;
  std::size_t found = 0;
  for (const char* const folder : {"src", "platform", "catalogue"}) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      if (!entry.is_regular_file()) continue;
      const std::string text = FileContent(entry.path().string());
      for (std::sregex_iterator match(text.begin(), text.end(), code), end; match != end; ++match) {
        ++found;
        const std::int32_t number = std::stoi(match->str());
        if (catalogue::FindCode(number) == nullptr) missing[number] = entry.path().string();
      }
    }
  }
  EXPECT_GT(found, 50U);  // the sources are where they are looked for
  EXPECT_TRUE(missing.empty()) << testing::PrintToString(missing);
}

TEST(MessagesTest, TextsContinueALineAndRemediesAreSentences) {
  for (const catalogue::ToldCode& told : catalogue::kCodes) {
    SCOPED_TRACE(told.code.number);
    const std::string_view text = told.code.text;
    const std::string_view remedy = told.code.remedy;
    EXPECT_NE(text.back(), '.');
    EXPECT_FALSE(text.front() >= 'A' && text.front() <= 'Z');
    EXPECT_EQ(remedy.back(), '.');
    EXPECT_EQ(remedy.find('%'), std::string_view::npos);
    const std::string filled = FillMessage(told.code.number, {});
    EXPECT_GT(filled.size(), 10U);
    EXPECT_EQ(filled.find_first_of("%[]"), std::string::npos) << filled;
    EXPECT_EQ(filled.find("  "), std::string::npos) << filled;
  }
}

struct FillCase {
  const char* catches;  // the fault that this row shows
  std::int32_t code;
  const char* parameters;  // divided by "|"
  const char* expected;
};

const FillCase kFills[] = {
    {"wording of the documented example", 220010, "", "no field is selected"},
    {"name taken for an index", 220703, "1", "a field is not in the data: \"1\""},
    {"index not turned into a name", 220715, "0", "a field is not continuous: \"before\""},
    {"several fields, one shown", 220915, "0|2", "a field is not continuous: \"before\", \"1999\""},
    {"index out of range", 220715, "3", "a field is not continuous: \"3\""},
    {"negative index", 220715, "-1", "a field is not continuous: \"-1\""},
    {"name beginning with digits", 221613, "0 days",
     "a field is not in the data, not categorical, or of another type than the first: \"0 days\""},
    {"parameter searched for placeholders", 220703, "%0[%1]%group",
     "a field is not in the data: \"%0[%1]%group\""},
    {"field name searched for placeholders", 220715, "1",
     "a field is not continuous: \"after; \"%1\"\""},
    {"control characters reach a terminal", 220703, "a\x1b[1m\nb",
     "a field is not in the data: \"a [1m b\""},
    {"order of parameters", 220312, "-2.5|3",
     "the Poisson distribution takes whole numbers from 0 on and a finite mean above 0, not the "
     "value "
     "-2.5 (weight 3)"},
    {"part shown with one of two parameters", 220312, "-2.5",
     "the Poisson distribution takes whole numbers from 0 on and a finite mean above 0"},
    {"one part kept when the other falls", 220023, "a ,b",
     "categorical fields a ,b are left out by tests of continuous fields"},
    {"tests by the names that people ask for", 220023, "a|CochransQ ,Sign",
     "categorical fields a are left out by tests of continuous fields: cochran-q, sign"},
    {"non-ASCII text", 220011, "größe", "a selected field is not in the data: \"größe\""},
    {"unknown code", 299999, "a|b", "a message that this host has no text for: a, b"},
};

TEST(MessagesTest, PlaceholdersAreFilled) {
  for (const FillCase& row : kFills) {
    std::istringstream divided(row.parameters);
    std::vector<std::string> parameters;
    for (std::string each; std::getline(divided, each, '|');) parameters.push_back(each);
    EXPECT_EQ(FillMessage(row.code, parameters, {}, Name), row.expected) << row.catches;
  }
  EXPECT_EQ(FillMessage(220025, std::vector<std::string>{""}),
            "no selected test takes the independent-samples fields as they are");
  const std::vector<std::pair<std::string, std::string>> named = {{"other", "9"}, {"group", "0;2"}};
  EXPECT_EQ(FillMessage(220013, {}, named, Name),
            "a sample (0;2) is in no homogeneous subset with another one");
}

TEST(MessagesTest, WithoutFieldNamesTheIndexIsShown) {
  EXPECT_EQ(FillMessage(220715, std::vector<std::string>{"0"}), "a field is not continuous: \"0\"");
}

}  // namespace
