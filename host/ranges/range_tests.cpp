#include "host/ranges/range_tests.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>

#include "catalogue/cards/jonckheere_terpstra.h"
#include "catalogue/cards/kruskal_wallis.h"
#include "catalogue/cards/ks_one_sample.h"
#include "catalogue/cards/ks_two_sample.h"
#include "catalogue/cards/mann_whitney.h"
#include "catalogue/cards/wilcoxon.h"
#include "catalogue/cards/wilcoxon_pairs.h"
#include "host/data/number.h"
#include "ranges/rank_figures.h"

namespace npar_host {
namespace {

constexpr const char* kAll = "DefaultAllDistinctValuesUsed_I_";

std::string CountText(std::int64_t count) { return std::to_string(count); }

}  // namespace

/// Makes one test of the sums.
class RangeTestMaker {
 public:
  RangeTestMaker(const SummedRanges& summed, const TestRequest& asked)
      : summed(summed),
        whole(summed.whole),
        sums(summed.sums),
        request(summed.request),
        asked(asked),
        card(asked.Test()) {
    test.name = card.element;
    test.type = "hypothesis_test";
    test.classification = catalogue::Classification(card.family);
    const auto pieces = static_cast<std::int64_t>(whole.Pieces());
    test.made = "from sorted ranges, " + CountText(pieces) + (pieces == 1 ? " piece" : " pieces");
  }

  ResultTest Make() {
    FindRangeTest(card)->make(*this);
    return std::move(test);
  }

  void MakeMannWhitney() {
    whole.RequireTwoGroups(std::string(card.name));
    SetCondition(std::string(kAll) + "MannWhitneyU_2", {"0", "1"});
    const RankFigures figures = MannWhitneyFigures(sums);
    TakeFigures(figures);
    for (const ComparedSample& group : figures.groups) {
      const std::string rank = NumberText(group.measure);
      test.groups.push_back(
          {{group.index}, {{"", "N", CountOf(group.index)}, {"", "MeanOfRank", rank}}, {}});
    }
    AddGroups(figures, "Group");
  }

  void MakeSmirnov() {
    SetCondition(std::string(kAll) + "KolmogorovSmirnov_2", {"0", "1"});
    TakeFigures(SmirnovFigures(*whole.Extremes()));
    if (test.Failed()) return;
    ResultTable table{"Groups", {"Group0", "Group1"}, {"N"}, {}};
    for (const std::int32_t group : {0, 1}) {
      test.groups.push_back({{group}, {{"", "N", CountOf(group)}}, {}});
      table.rows.AddRow({CountOf(group)});
    }
    Extend(std::move(table));
  }

  void MakeKruskalWallis() {
    SetCondition(std::string(kAll) + "KruskalWallis_2", {"0", "1"});
    const bool wantsPairs = asked.ValueOf("compare") == "pairwise";
    const RankFigures figures = KruskalWallisFigures(sums, wantsPairs, request.significance);
    TakeFigures(figures);
    AddGroups(figures, "");
    AddPairs(figures);
  }

  void MakeJonckheere() {
    SetCondition(std::string(kAll) + "JonckheereTerpstra_2", {"0", "1"});
    test.groupsDescend = asked.ValueOf("order") == "descending";
    const RankFigures figures = JonckheereFigures(sums, test.groupsDescend, request.significance);
    TakeFigures(figures);
    AddGroups(figures, "");
    AddPairs(figures);
  }

  void MakeSignedRanks() {
    const bool isPair = &card == &catalogue::wilcoxon_pairs::kCard;
    if (isPair) {
      SetCondition("R_WilcoxonSignedRanks_2", {"0", "1"});
    } else {
      const double median = RequireNumber(asked.ValueOf("median"), "median");
      SetCondition("O_WilcoxonSignedRanks_2", {"0", NumberText(median)});
    }
    const SignedRankSums ranked{sums, RangeRecords::kNegative, RangeRecords::kPositive,
                                whole.Zeros()};
    TakeFigures(SignedRankFigures(ranked, isPair));
    if (!isPair || test.Failed()) return;
    test.differences =
        ResultDistribution{{{"", "NegativeDifferences", CountOf(RangeRecords::kNegative)},
                            {"", "Ties", CountText(whole.Zeros())},
                            {"", "PositiveDifferences", CountOf(RangeRecords::kPositive)}},
                           {}};
  }

  void MakeFit() {
    const std::size_t place = PlaceOfFit();
    const FittedSums& fitted = summed.fits[place];
    const FittedDistribution distribution =
        fitted.Fit(summed.plan.fits[place]).value_or(summed.plan.fits[place]);
    std::vector<std::string> parameters = {"0"};
    for (const double parameter : distribution.Parameters()) {
      parameters.push_back(parameter == kMissingNumber ? "" : NumberText(parameter));
    }
    SetCondition(std::string(distribution.ConditionKey()), std::move(parameters));
    const RankFigures figures =
        FitFigures(summed.plan.fits[place], fitted, whole.Fits().Differences(place));
    TakeFigures(figures);
    if (const auto& cell = fitted.NoCount()) {
      test.messages.front().parameters = {NumberText(cell->value), CountText(cell->weight)};
    }
    Extend(figures.extended);
  }

 private:
  /// Of the test among those that fit a distribution.
  [[nodiscard]] std::size_t PlaceOfFit() const {
    const std::span before(request.tests.data(), &asked);
    return static_cast<std::size_t>(std::ranges::count_if(
        before, [](const TestRequest& each) { return FindRangeTest(each.Test())->fits; }));
  }

  void SetCondition(std::string key, std::vector<std::string> parameters) {
    test.conditionKey = std::move(key);
    test.conditionParameters = std::move(parameters);
  }

  [[nodiscard]] std::string CountOf(std::size_t group) const {
    return CountText(sums.Groups()[group].count);
  }
  [[nodiscard]] std::string CountOf(std::int32_t group) const {
    return CountOf(static_cast<std::size_t>(group));
  }

  void TakeFigures(const RankFigures& figures) {
    for (const auto& [name, value] : figures.extremes) {
      test.statistics.push_back({"MostExtremeDifferences", std::string(name), NumberText(value)});
    }
    for (const auto& [name, value] : figures.statistics) {
      test.statistics.push_back({"", std::string(name), NumberText(value)});
    }
    for (const NPARMessage& message : figures.messages) {
      test.messages.push_back({message.status.GetErrorCode(), TypeOf(message.kind), message.params,
                               message.namedParams});
    }
    test.decision = test.Failed()                                ? "unknown"
                    : request.significance > figures.decidingSig ? "reject"
                                                                 : "retain";
  }

  [[nodiscard]] static const char* TypeOf(MessageKind kind) {
    if (kind == MessageKind::Error) return "error";
    return kind == MessageKind::Warning ? "warning" : "helpMessage";
  }

  /// The table of groups, each called by `prefix` and its code.
  void AddGroups(const RankFigures& figures, const std::string& prefix) {
    if (test.Failed()) return;
    ResultTable table{"Groups", {}, {"N", "MeanRank"}, {}};
    for (const ComparedSample& group : figures.groups) {
      table.rowNames.push_back(prefix + std::to_string(group.index));
      table.rows.AddRow({CountOf(group.index), NumberText(group.measure)});
    }
    Extend(std::move(table));
  }
  void Extend(ResultTable groups) {
    if (!request.extendedFigures) return;
    const std::string count = CountText(sums.Count());
    test.extended = ResultExtended{{{"", "TotalN", count}}, {std::move(groups)}};
  }

  void Extend(const ExtendedFigures& extended) {
    if (!request.extendedFigures || extended.IsEmpty()) return;
    test.extended.emplace();
    for (const ExtendedFigures::Figure& figure : extended.Figures()) {
      const std::int64_t* const count = figure.value.Count();
      test.extended->figures.push_back(
          {"", std::string(figure.name),
           count == nullptr ? NumberText(*figure.value.Number()) : CountText(*count)});
    }
  }

  void AddPairs(const RankFigures& figures) {
    if (figures.pairs.empty()) return;
    test.pairwise.present = true;
    for (const ComparedSample& group : figures.compared) {
      test.pairwise.order.push_back(group.index);
      test.pairwise.values.push_back(NumberText(group.measure));
    }
    ResultTable& table = test.pairwise.content;
    table.columnNames = {
        "Sample1", "Sample2", "TestStatistic", "StandardError", "StandardTestStatistic",
        "Sig",     "AdjSig"};
    for (const PairwiseComparison& pair : figures.pairs) {
      table.rows.AddRow({std::to_string(pair.sample1), std::to_string(pair.sample2),
                         NumberText(pair.figures.testStatistic),
                         NumberText(pair.figures.standardError),
                         NumberText(pair.figures.standardTestStatistic),
                         NumberText(pair.figures.sig), NumberText(pair.adjSig)});
    }
  }

  const SummedRanges& summed;
  const RangePiece& whole;
  const RunSums& sums;
  const AnalysisRequest& request;
  const TestRequest& asked;
  const catalogue::Card& card;
  ResultTest test;
};

namespace {

template <void (RangeTestMaker::*kMake)()>
void Make(RangeTestMaker& maker) {
  (maker.*kMake)();
}

RangeTest OfGroups(const catalogue::Card& card, std::vector<std::string> options,
                   void (*make)(RangeTestMaker&)) {
  return {card, std::move(options), RangePlan::Order::Value, false, false, make};
}

RangeTest OfDistribution(const catalogue::Card& card, std::vector<std::string> options) {
  return {card,
          std::move(options),
          RangePlan::Order::Value,
          true,
          true,
          Make<&RangeTestMaker::MakeFit>};
}

}  // namespace

const std::vector<RangeTest>& AllRangeTests() {
  namespace ks = catalogue::ks_one_sample;
  using Order = RangePlan::Order;
  using Maker = RangeTestMaker;
  static const std::vector<RangeTest> tests = {
      OfGroups(catalogue::mann_whitney::kCard, {}, Make<&Maker::MakeMannWhitney>),
      OfGroups(catalogue::kruskal_wallis::kCard, {"compare"}, Make<&Maker::MakeKruskalWallis>),
      OfGroups(catalogue::jonckheere_terpstra::kCard, {"order", "compare"},
               Make<&Maker::MakeJonckheere>),
      {catalogue::ks_two_sample::kCard, {}, Order::Value, false, true, Make<&Maker::MakeSmirnov>},
      OfDistribution(ks::kNormal, {"mean", "sd"}),
      OfDistribution(ks::kUniform, {"min", "max"}),
      OfDistribution(ks::kPoisson, {"mean"}),
      OfDistribution(ks::kExponential, {"mean"}),
      {catalogue::wilcoxon_pairs::kCard,
       {},
       Order::Difference,
       false,
       false,
       Make<&Maker::MakeSignedRanks>},
      {catalogue::wilcoxon::kCard,
       {"median"},
       Order::Distance,
       false,
       false,
       Make<&Maker::MakeSignedRanks>},
  };
  return tests;
}

const RangeTest* FindRangeTest(const catalogue::Card& card) {
  const auto found = std::ranges::find_if(
      AllRangeTests(), [&card](const RangeTest& each) { return &each.card == &card; });
  return found == AllRangeTests().end() ? nullptr : &*found;
}

ResultTest MakeRangeTest(const SummedRanges& summed, const TestRequest& asked) {
  return RangeTestMaker(summed, asked).Make();
}

}  // namespace npar_host
