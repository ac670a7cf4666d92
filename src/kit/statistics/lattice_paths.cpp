#include "kit/statistics/lattice_paths.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "arithmetic/elementary.h"

namespace {

/// Paths of unit steps from (0, 0) to (across, up) touch a boundary where, at the end of a run, the
/// distance up i - across j is at least `above` or at most -`below`; 0 for no such boundary.
struct Boundary {
  std::int64_t across;
  std::int64_t up;
  std::int64_t above;
  std::int64_t below;
};

/// More digits and a wider range than a double's, since a share is an average of averages over as
/// many steps as there are units, and may be as small as the inverse of the number of paths.
using Share = arithmetic::Extended;

/// The share of all paths that touch the boundary. share[i] is that of the paths to (i, j) with
/// i + j = m, for one m after the other.
double TouchingShare(const Boundary& boundary, const std::vector<bool>& endsRun) {
  const auto [across, up, above, below] = boundary;
  const std::int64_t total = across + up;
  std::vector<Share> share(static_cast<std::size_t>(across) + 1, Share{0});
  for (std::int64_t m = 1; m <= total; ++m) {
    std::int64_t first = std::max<std::int64_t>(0, m - up);
    std::int64_t last = std::min(across, m);
    const Share scale = Share{1} / static_cast<Share>(m);
    for (std::int64_t i = last; i >= std::max<std::int64_t>(first, 1); --i) {
      Share& here = share[static_cast<std::size_t>(i)];
      here = (static_cast<Share>(i) * share[static_cast<std::size_t>(i) - 1] +
              static_cast<Share>(m - i) * here) *
             scale;
    }
    if (!endsRun[static_cast<std::size_t>(m)]) continue;
    // up i - across (m - i) = total i - across m
    if (above > 0) {
      for (; last >= first && total * last - across * m >= above; --last) {
        share[static_cast<std::size_t>(last)] = 1;
      }
    }
    if (below > 0) {
      for (; first <= last && total * first - across * m <= -below; ++first) {
        share[static_cast<std::size_t>(first)] = 1;
      }
    }
  }
  return static_cast<double>(share.back());
}

}  // namespace

ExactTails ConditionalSmirnov(std::int64_t n1, std::int64_t n2, const SmirnovDistances& distances,
                              const std::vector<bool>& endsRun) {
  // The smaller group goes across, which keeps the shares few.
  const bool isSwapped = n1 > n2;
  const auto shareOf = [&](std::int64_t above, std::int64_t below) {
    if (above == 0 && below == 0) return 1.0;
    if (isSwapped) std::swap(above, below);
    return TouchingShare({std::min(n1, n2), std::max(n1, n2), above, below}, endsRun);
  };
  const std::int64_t largest = std::max(distances.firstAbove, distances.secondAbove);
  ExactTails sigs;
  sigs.twoSided = shareOf(largest, largest);
  sigs.less = shareOf(0, distances.secondAbove);
  sigs.greater = shareOf(distances.firstAbove, 0);
  return sigs;
}
