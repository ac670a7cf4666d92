#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

namespace {

using testing::HasSubstr;

std::string ReadText(const char* path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

TEST(HostInterfacePage, QuotesTheExampleHostAsItStands) {
  const std::string page = ReadText("docs/host_interface.md");
  const std::string host = ReadText("examples/host/host.c");
  int quotes = 0;
  const std::string fence = "```c\n";
  for (std::size_t at = page.find(fence); at != std::string::npos; at = page.find(fence, at)) {
    at += fence.size();
    const std::string quote = page.substr(at, page.find("```", at) - at);
    EXPECT_THAT(host, HasSubstr(quote));
    ++quotes;
  }
  EXPECT_GE(quotes, 5);
}

}  // namespace
