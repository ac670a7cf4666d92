#pragma once

#include <string>

namespace npar_host {

/// A bar on standard error, silent where that is no terminal. It takes its line away when it ends.
class ProgressBar {
 public:
  ProgressBar();
  ~ProgressBar();
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  void Show(double done, double total);

 private:
  bool onTerminal;
  int shownPercent = -1;
};

}  // namespace npar_host
