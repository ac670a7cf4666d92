#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ranges/fitted_pieces.h"
#include "ranges/smirnov_extremes.h"

namespace npar_host {

/// What pieces have to know of all of them before they are summed a second time: of two groups,
/// their sizes, and how many of their units stand before each piece; of distributions, what they
/// were fitted to, and where each piece begins and ends.
struct FurtherPass {
  FurtherPass() = default;
  /// From what Write gave. InputError for other bytes.
  explicit FurtherPass(std::string_view bytes);
  [[nodiscard]] std::string Write() const;
  /// Extremes that begin with a piece, counted from 0. InputError for a piece that was not there.
  [[nodiscard]] SmirnovExtremes Start(std::size_t piece) const;
  /// The same of distributions, as a plan wants them.
  [[nodiscard]] FittedPieces StartFits(const FittedPieces::Distributions& wanted,
                                       std::size_t piece) const;

  std::string signature;  // of the plan
  std::vector<std::string> groups;
  SmirnovExtremes::Counts sizes{};
  std::vector<SmirnovExtremes::Counts> before;  // by piece
  std::vector<FitPass> fits;

 private:
  void CheckPiece(std::size_t piece) const;
};

}  // namespace npar_host
