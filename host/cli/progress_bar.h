#pragma once

#include <string>

#include "host/loader/run_host.h"

namespace npar_host {

/// What a person calls the tests of a pass: "Sign test"; "3 tests in the order of salary: Moses
/// test of extreme reactions, Median test".
[[nodiscard]] std::string PassTitle(const PassInHand& pass);

/// A bar on standard error with what is in hand; silent where that is no terminal, or one that
/// can't take a line away. The bar takes its own away when it ends.
class ProgressBar {
 public:
  ProgressBar();
  ~ProgressBar();
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  void Show(double done, double total);
  /// Names what is in hand from here on; cut where the terminal is too narrow.
  void Name(std::string newTitle);

 private:
  void Draw();

  bool isSeen;
  bool isAscii;
  bool isDrawn = false;
  int percent = 0;
  std::string title;
};

}  // namespace npar_host
