#include "planning/test_table.h"

#include <array>

#include "tests/independent/hodges_lehmann_groups.h"
#include "tests/independent/jonckheere_terpstra.h"
#include "tests/independent/kruskal_wallis.h"
#include "tests/independent/ks_two_sample.h"
#include "tests/independent/mann_whitney.h"
#include "tests/independent/median.h"
#include "tests/independent/moses.h"
#include "tests/independent/wald_wolfowitz.h"
#include "tests/one_sample/binomial.h"
#include "tests/one_sample/chi_square.h"
#include "tests/one_sample/confidence_interval.h"
#include "tests/one_sample/ks_one_sample.h"
#include "tests/one_sample/runs.h"
#include "tests/one_sample/wilcoxon.h"
#include "tests/related/cochran_q.h"
#include "tests/related/friedman.h"
#include "tests/related/hodges_lehmann_pairs.h"
#include "tests/related/kendall_w.h"
#include "tests/related/marginal_homogeneity.h"
#include "tests/related/mcnemar.h"
#include "tests/related/sign.h"
#include "tests/related/wilcoxon_pairs.h"

// One include and one row for each test; names are those of the entries that the settings'
// translation makes.

std::span<const TestTableRow> TestTable() {
  static constexpr std::array kRows = std::to_array<TestTableRow>({
      {"IHodgesLehmannEstimateGroups", ConstructHodgesLehmannGroupsTest},
      {"IJonckheereTerpstra", ConstructJonckheereTest},
      {"IKolmogorovSmirnov", ConstructKSTwoSampleTest},
      {"IKruskalWallis", ConstructKruskalWallisTest},
      {"IMannWhitneyU", ConstructMannWhitneyTest},
      {"IMedian", ConstructMedianTest},
      {"IMoses", ConstructMosesTest},
      {"IWaldWolfowitzRuns", ConstructWaldWolfowitzTest},
      {"OBinomial", ConstructBinomialTest},
      {"OChiSquare", ConstructChiSquareTest},
      {"OEstimateConfidenceInterval", ConstructEstimateCITest},
      {"OKolmogorovSmirnovExponential", ConstructKSExponentialTest},
      {"OKolmogorovSmirnovNormal", ConstructKSNormalTest},
      {"OKolmogorovSmirnovPoisson", ConstructKSPoissonTest},
      {"OKolmogorovSmirnovUniform", ConstructKSUniformTest},
      {"ORuns", ConstructRunsTest},
      {"OWilcoxonSignedRanks", ConstructWilcoxonOneSampleTest},
      {"RCochransQ", ConstructCochransQTest},
      {"RFriedmansTwoWayByRanks", ConstructFriedmanTest},
      {"RHodgesLehmannEstimatePairs", ConstructHodgesLehmannPairsTest},
      {"RKendallsCoefficient", ConstructKendallsWTest},
      {"RMarginalHomogeneity", ConstructMarginalHomogeneityTest},
      {"RMcNemar", ConstructMcNemarTest},
      {"RSign", ConstructSignTest},
      {"RWilcoxonSignedRanks", ConstructWilcoxonPairsTest},
  });
  return kRows;
}
