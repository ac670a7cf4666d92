#include "host/cli/progress_bar.h"

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

#include "host/data/join_words.h"
#include "host/os/terminal.h"
#include "host/render/text_layout.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

constexpr std::size_t kWidth = 20;
constexpr std::size_t kLeftOfTitle = kWidth + 9;  // "[####....]  42 % "
constexpr const char* kClearToEnd = "\033[K";

// The words that fit.
std::string Cut(const std::string& text, std::size_t width, bool isAscii) {
  if (DisplayWidth(text) <= width) return text;
  const std::string mark = isAscii ? "..." : "…";
  if (width <= DisplayWidth(mark)) return "";
  return WrapText(text, width - DisplayWidth(mark)).front() + mark;
}

}  // namespace

std::string PassTitle(const PassInHand& pass) {
  std::vector<std::string> titles;
  for (const std::string& test : pass.tests) {
    std::string title = TestTitle(test);
    if (std::ranges::find(titles, title) == titles.end()) titles.push_back(std::move(title));
  }
  std::string text = JoinWords(titles, ", ");
  if (pass.tests.size() == 1) return text;
  const std::string order = pass.orderField.empty() ? "" : " in the order of " + pass.orderField;
  return std::to_string(pass.tests.size()) + " tests" + order + ": " + text;
}

ProgressBar::ProgressBar()
    : isSeen(IsTerminal(kStandardError) && TerminalKnowsEscapes()), isAscii(!LocaleIsUtf8()) {}

ProgressBar::~ProgressBar() {
  if (isDrawn) std::fprintf(stderr, "\r%s", kClearToEnd);
}

void ProgressBar::Show(double done, double total) {
  if (!(total > 0.0) || !(done >= 0.0) || done > total) return;
  const int newPercent = static_cast<int>(100.0 * (done / total));
  if (isDrawn && newPercent == percent) return;
  percent = newPercent;
  Draw();
}

void ProgressBar::Name(std::string newTitle) {
  title = std::move(newTitle);
  Draw();
}

void ProgressBar::Draw() {
  if (!isSeen) return;
  isDrawn = true;
  const std::size_t columns = TerminalColumns(kStandardError);
  // The last column stays free: some terminals begin a new line behind it.
  const std::size_t room = columns > kLeftOfTitle + 1 ? columns - kLeftOfTitle - 1 : 0;
  const std::size_t filled = static_cast<std::size_t>(percent) * kWidth / 100;
  std::fprintf(stderr, "\r[%s%s] %3d %% %s%s", std::string(filled, '#').c_str(),
               std::string(kWidth - filled, '.').c_str(), percent,
               Cut(Printable(title, isAscii), room, isAscii).c_str(), kClearToEnd);
}

}  // namespace npar_host
