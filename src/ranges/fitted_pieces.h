#pragma once

#include <cstddef>
#include <vector>

#include "ranges/bytes.h"
#include "ranges/fit_extremes.h"
#include "ranges/fitted_sums.h"

/// What every piece has to know of a distribution before its second pass.
struct FitPass {
  FittedWhole whole;
  std::vector<FitStart> starts;  ///< by piece

  /// Can it have been made of pieces?
  [[nodiscard]] bool IsSound() const;
  template <typename See, typename CountStarts>
  void Visit(See& see, CountStarts countStarts) {
    whole.Visit(see);
    starts.resize(countStarts(starts.size()));
    for (FitStart& start : starts) start.Visit(see);
  }
};

/// Distributions and what they are fitted to, of one piece of a sorted sample or of pieces that
/// follow each other; in a second pass also how far these are from them.
class FittedPieces {
 public:
  using Distributions = std::vector<FittedDistribution>;

  FittedPieces() : FittedPieces(Distributions()) {}
  /// A piece of the first pass.
  explicit FittedPieces(const Distributions& wanted)
      : wanted(wanted), sumsOfPieces(1, std::vector<FittedSums>(wanted.size())) {}
  /// The piece of a number, counted from 0, of a second pass; of each distribution one.
  FittedPieces(const Distributions& wanted, const std::vector<FitPass>& pass, std::size_t piece);

  void Take(const Units& units);
  /// After the last units of a piece.
  void Finish();

  /// Can these follow, as far as their counts tell?
  [[nodiscard]] bool Precede(const FittedPieces& next) const;
  /// Takes pieces that these precede.
  void Append(const FittedPieces& next);

  [[nodiscard]] std::size_t Count() const noexcept { return sumsOfPieces.front().size(); }
  [[nodiscard]] bool AreOfFurtherPass() const noexcept { return !extremes.empty(); }
  [[nodiscard]] std::vector<FittedSums> Totals() const;
  /// Of a second pass.
  [[nodiscard]] const ExtremeDifferences& Differences(std::size_t fit) const {
    return extremes[fit].Differences();
  }
  /// What a second pass begins with.
  [[nodiscard]] std::vector<FitPass> NextPass(const Distributions& fitted) const;
  /// Were the pieces of a second pass those of the first one, and all of them?
  [[nodiscard]] bool AreComplete(const Distributions& fitted) const;

  void Write(ByteWriter& write) const;
  /// False for what can't have been written so.
  [[nodiscard]] bool Read(ByteReader& read);

 private:
  [[nodiscard]] std::vector<FitStart> StartsOf(std::size_t fit) const;

  Distributions wanted;  // of a piece that takes units
  std::vector<FitWalk> walks;
  std::vector<std::vector<FittedSums>> sumsOfPieces;  // by piece, then by distribution
  std::vector<FitExtremes> extremes;                  // by distribution
};
