#include "kit/fits/kolmogorov.h"

#include <cmath>

#include "kit/statistics/kolmogorov_exact.h"
#include "kit/statistics/kolmogorov_smirnov.h"
#include "kit/statistics/lilliefors.h"

namespace {

void AddExact(ExtendedFigures& figures, std::int64_t n, const ExtremeDifferences& differences) {
  if (n > kMostExactKolmogorovUnits) return;
  figures.Add("ExactSig2Tailed", TwoSidedKolmogorovSig(n, differences.Absolute()));
  figures.Add("ExactSig1TailedLess", OneSidedKolmogorovSig(n, differences.Positive()));
  figures.Add("ExactSig1TailedGreater", OneSidedKolmogorovSig(n, -differences.Negative()));
}

void AddLilliefors(ExtendedFigures& figures, ReferenceDistribution::Family family, std::int64_t n,
                   double d) {
  if (n < kFewestLillieforsUnits) return;
  const LillieforsSig found = family == ReferenceDistribution::Family::Normal
                                  ? NormalLillieforsSig(n, d)
                                  : ExponentialLillieforsSig(n, d);
  switch (found.kind) {
    case LillieforsSig::Kind::Value:
      figures.Add("LillieforsSig", found.sig);
      break;
    case LillieforsSig::Kind::AtLeast:
      figures.Add("LillieforsSigAtLeast", found.sig);
      break;
    case LillieforsSig::Kind::AtMost:
      figures.Add("LillieforsSigAtMost", found.sig);
      break;
  }
}

}  // namespace

double KolmogorovStatistic(std::int64_t n, const ExtremeDifferences& differences) {
  return std::sqrt(static_cast<double>(n)) * differences.Absolute();
}

void ExtendKolmogorov(ExtendedFigures& figures, const FittedDistribution& fitted, std::int64_t n,
                      const ExtremeDifferences& differences) {
  figures.Add("ValidN", n);
  const double d = differences.Absolute();
  if (!(d >= 0.0)) return;  // no difference is a number
  figures.Add("AbsoluteDifferenceLocation", differences.Location());
  figures.Add("LimitingSig2Tailed", LimitingKolmogorovSig(KolmogorovStatistic(n, differences)));
  if (fitted.IsGiven()) AddExact(figures, n, differences);
  if (fitted.IsEstimated()) AddLilliefors(figures, fitted.family, n, d);
}
