#include "planning/test_table.h"

#include <array>
#include <iterator>
#include <utility>

#include "catalogue/catalogue.h"
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

// One include and one row for each card; a card without a row does not compile.

namespace {

struct Unit {
  const catalogue::Card* card;
  ConstructTest construct;
};

constexpr Unit kUnits[] = {
    {&catalogue::binomial::kCard, ConstructBinomialTest},
    {&catalogue::confidence_interval::kCard, ConstructEstimateCITest},
    {&catalogue::chi_square::kCard, ConstructChiSquareTest},
    {&catalogue::ks_one_sample::kNormal, ConstructKSNormalTest},
    {&catalogue::ks_one_sample::kUniform, ConstructKSUniformTest},
    {&catalogue::ks_one_sample::kPoisson, ConstructKSPoissonTest},
    {&catalogue::ks_one_sample::kExponential, ConstructKSExponentialTest},
    {&catalogue::runs::kCard, ConstructRunsTest},
    {&catalogue::wilcoxon::kCard, ConstructWilcoxonOneSampleTest},
    {&catalogue::sign::kCard, ConstructSignTest},
    {&catalogue::wilcoxon_pairs::kCard, ConstructWilcoxonPairsTest},
    {&catalogue::mcnemar::kCard, ConstructMcNemarTest},
    {&catalogue::marginal_homogeneity::kCard, ConstructMarginalHomogeneityTest},
    {&catalogue::cochran_q::kCard, ConstructCochransQTest},
    {&catalogue::friedman::kCard, ConstructFriedmanTest},
    {&catalogue::kendall_w::kCard, ConstructKendallsWTest},
    {&catalogue::hodges_lehmann_pairs::kCard, ConstructHodgesLehmannPairsTest},
    {&catalogue::mann_whitney::kCard, ConstructMannWhitneyTest},
    {&catalogue::ks_two_sample::kCard, ConstructKSTwoSampleTest},
    {&catalogue::wald_wolfowitz::kCard, ConstructWaldWolfowitzTest},
    {&catalogue::moses::kCard, ConstructMosesTest},
    {&catalogue::median::kCard, ConstructMedianTest},
    {&catalogue::kruskal_wallis::kCard, ConstructKruskalWallisTest},
    {&catalogue::jonckheere_terpstra::kCard, ConstructJonckheereTest},
    {&catalogue::hodges_lehmann_groups::kCard, ConstructHodgesLehmannGroupsTest},
};

constexpr ConstructTest ConstructOf(const catalogue::Card& card) {
  for (const Unit& unit : kUnits) {
    if (unit.card == &card) return unit.construct;
  }
  throw "a card has no construct function";
}

template <std::size_t... index>
constexpr auto MakeTable(std::index_sequence<index...>) {
  return std::array{
      TestTableRow{catalogue::kCards[index]->entry, ConstructOf(*catalogue::kCards[index])}...};
}

}  // namespace

std::span<const TestTableRow> TestTable() {
  static constexpr auto kRows = MakeTable(std::make_index_sequence<std::size(catalogue::kCards)>());
  return kRows;
}
