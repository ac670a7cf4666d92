#include "host/messages/messages.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <regex>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

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
  for (const char* const folder : {"src", "platform"}) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      if (!entry.is_regular_file()) continue;
      const std::string text = FileContent(entry.path().string());
      for (std::sregex_iterator match(text.begin(), text.end(), code), end; match != end; ++match) {
        ++found;
        const std::int32_t number = std::stoi(match->str());
        if (FindMessage(number) == nullptr) missing[number] = entry.path().string();
      }
    }
  }
  EXPECT_GT(found, 50U);  // the sources are where they are looked for
  EXPECT_TRUE(missing.empty()) << testing::PrintToString(missing);
}

TEST(MessagesTest, TextsAreCompleteAndCodesAscend) {
  std::int32_t previous = 0;
  for (const MessageText& message : AllMessages()) {
    SCOPED_TRACE(message.code);
    EXPECT_LT(previous, message.code);
    previous = message.code;
    EXPECT_EQ(FindMessage(message.code), &message);
    ASSERT_GT(message.text.size(), 10U);
    EXPECT_NE(message.text.back(), '.');
    EXPECT_FALSE(message.text.front() >= 'A' && message.text.front() <= 'Z');
    ASSERT_GT(message.remedy.size(), 10U);
    EXPECT_EQ(message.remedy.back(), '.');
    EXPECT_EQ(message.remedy.find('%'), std::string_view::npos);
    EXPECT_TRUE(MessageSource(message.code) != "Run" || message.code / 100 == 2200 ||
                message.code < 10);
  }
}

TEST(MessagesTest, WithoutParametersNoPlaceholderIsLeft) {
  for (const MessageText& message : AllMessages()) {
    const std::string filled = FillMessage(message.code, {});
    EXPECT_GT(filled.size(), 10U) << message.code;
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
     "the Poisson distribution takes whole numbers from 0 on and a mean above 0, not the value "
     "-2.5 (weight 3)"},
    {"part shown with one of two parameters", 220312, "-2.5",
     "the Poisson distribution takes whole numbers from 0 on and a mean above 0"},
    {"one part kept when the other falls", 220023, "a ,b",
     "categorical fields a ,b are left out by tests of continuous fields"},
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
  const std::vector<std::pair<std::string, std::string>> named = {{"other", "9"}, {"group", "0;2"}};
  EXPECT_EQ(FillMessage(220013, {}, named, Name),
            "a sample (0;2) is in no homogeneous subset with another one");
}

TEST(MessagesTest, WithoutFieldNamesTheIndexIsShown) {
  EXPECT_EQ(FillMessage(220715, std::vector<std::string>{"0"}), "a field is not continuous: \"0\"");
}

TEST(MessagesTest, UnknownCodeIsNotFound) {
  EXPECT_EQ(FindMessage(0), nullptr);
  EXPECT_EQ(FindMessage(220006), nullptr);
  EXPECT_EQ(FindMessage(240038), nullptr);
}

/// docs/messages.md as the table has it.
std::string Page() {
  std::ostringstream page;
  page << "# Messages\n\n"
          "What each code says and what to do about it; `npar explain CODE` prints the same. `%0`, "
          "`%1`\nstand for the parameters of a message, `%*` for all of them, `%group` for the one "
          "of that name;\na part in brackets is left out where its parameters are not given.\n\n"
          "An error of a run leaves no result; an error of a test leaves the other tests "
          "standing.\n";
  std::string_view source;
  for (const MessageText& message : AllMessages()) {
    if (MessageSource(message.code) != source) {
      source = MessageSource(message.code);
      page << "\n## " << source << "\n\n| code | kind | what is wrong | what to do |\n"
           << "|---|---|---|---|\n";
    }
    page << "| " << message.code << " | " << KindName(message.kind) << " | " << message.text
         << " | " << message.remedy << " |\n";
  }
  return page.str();
}

TEST(MessagesTest, DocumentationListsTheTable) {
  if (FileContent("docs/messages.md") == Page()) return;
  const std::string fresh = std::string(NPAR_BUILD_DIR) + "/messages.md";
  std::ofstream(fresh, std::ios::binary) << Page();
  ADD_FAILURE() << "docs/messages.md is not what the table says: copy " << fresh << " over it";
}

}  // namespace
