#include "host/cli/progress_bar.h"

#include <unistd.h>

#include <cstdio>

namespace npar_host {
namespace {

constexpr int kWidth = 40;
constexpr const char* kClearLine = "\r\033[K";

}  // namespace

ProgressBar::ProgressBar() : onTerminal(isatty(STDERR_FILENO) == 1) {}

ProgressBar::~ProgressBar() {
  if (shownPercent >= 0) std::fputs(kClearLine, stderr);
}

void ProgressBar::Show(double done, double total) {
  if (!onTerminal || !(total > 0.0) || !(done >= 0.0) || done > total) return;
  const int percent = static_cast<int>(100.0 * (done / total));
  if (percent == shownPercent) return;
  shownPercent = percent;
  const int filled = percent * kWidth / 100;
  std::fprintf(stderr, "\r[%s%s] %3d %%",
               std::string(static_cast<std::size_t>(filled), '#').c_str(),
               std::string(static_cast<std::size_t>(kWidth - filled), '.').c_str(), percent);
}

}  // namespace npar_host
