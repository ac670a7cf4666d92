#include "host/ranges/range_document.h"

#include <algorithm>
#include <utility>

#include "catalogue/cards/jonckheere_terpstra.h"
#include "catalogue/cards/kruskal_wallis.h"
#include "catalogue/cards/ks_two_sample.h"
#include "catalogue/cards/mann_whitney.h"
#include "catalogue/cards/wilcoxon.h"
#include "catalogue/cards/wilcoxon_pairs.h"
#include "host/data/number.h"
#include "host/ranges/range_plan.h"
#include "host/request/word_list.h"
#include "ranges/rank_figures.h"

namespace npar_host {
namespace {

constexpr const char* kAll = "DefaultAllDistinctValuesUsed_I_";

const char* DataTypeOf(Storage storage) {
  switch (storage) {
    case Storage::String:
      return "string";
    case Storage::Integer:
      return "integer";
    case Storage::Date:
      return "date";
    case Storage::Time:
      return "time";
    case Storage::Timestamp:
      return "timestamp";
    default:
      return "double";
  }
}

std::string CountText(std::int64_t count) { return std::to_string(count); }

/// One test of the sums.
class TestOfRanges {
 public:
  TestOfRanges(const RangePiece& whole, const RunSums& sums, const AnalysisRequest& request,
               const TestRequest& asked)
      : whole(whole), sums(sums), request(request), asked(asked), card(asked.Test()) {
    test.name = card.element;
    test.type = "hypothesis_test";
    test.classification = catalogue::Classification(card.family);
    const auto pieces = static_cast<std::int64_t>(whole.Pieces());
    test.made = "from sorted ranges, " + CountText(pieces) + (pieces == 1 ? " piece" : " pieces");
  }

  ResultTest Make() {
    if (&card == &catalogue::mann_whitney::kCard) {
      MakeMannWhitney();
    } else if (&card == &catalogue::ks_two_sample::kCard) {
      MakeSmirnov();
    } else if (&card == &catalogue::kruskal_wallis::kCard) {
      MakeKruskalWallis();
    } else if (&card == &catalogue::jonckheere_terpstra::kCard) {
      MakeJonckheere();
    } else {
      MakeSignedRanks();
    }
    return std::move(test);
  }

 private:
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
    const RankFigures figures = SmirnovFigures(*whole.Extremes());
    for (const auto& [name, value] : figures.extremes) {
      test.statistics.push_back({"MostExtremeDifferences", std::string(name), NumberText(value)});
    }
    TakeFigures(figures);
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
    const RankFigures figures = JonckheereFigures(sums, test.groupsDescend);
    TakeFigures(figures);
    AddGroups(figures, "");
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

  void AddPairs(const RankFigures& figures) {
    if (figures.pairs.empty()) return;
    test.pairwise.present = true;
    for (const ComparedSample& group : figures.groups) {
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

  const RangePiece& whole;
  const RunSums& sums;
  const AnalysisRequest& request;
  const TestRequest& asked;
  const catalogue::Card& card;
  ResultTest test;
};

/// UsageError for a category of a given order that no record has.
void CheckOrder(const RangePlan& plan, const ResultField& field) {
  for (const std::string& text : plan.groupOrder) {
    if (std::ranges::find(field.categories, text, &ResultCategory::value) !=
        field.categories.end()) {
      continue;
    }
    throw UsageError("--ordinal " + plan.group + " names " + Quoted(text) +
                         ", which the field does not hold; name the categories that it has",
                     plan.group);
  }
}

void AddFields(ResultDocument& document, const RangePiece& whole, const RangePlan& plan,
               const AnalysisRequest& request) {
  for (const std::string& name : plan.fields) {
    ResultField& field = document.fields.emplace_back();
    field.name = name;
    field.dataType = "double";
  }
  if (plan.group.empty()) return;
  ResultField& field = document.fields.emplace_back();
  field.name = plan.group;
  field.isCategorical = true;
  field.dataType = DataTypeOf(whole.GroupStorage());
  const FieldMeasure* const measure = request.MeasureOf(plan.group);
  field.isNominal = measure == nullptr || measure->measure == "nominal";
  for (const Category& group : whole.Groups()) {
    field.categories.push_back({group.text, group.label});
  }
  CheckOrder(plan, field);
}

}  // namespace

ResultDocument DocumentOf(const RangePiece& whole, const AnalysisRequest& request) {
  const RangePlan plan = PlanRanges(request);
  ResultDocument document;
  document.application = "npar";
  document.applicationVersion = NPAR_VERSION;
  const RecordCounts& counts = whole.Counts();
  document.totalCount = static_cast<double>(counts.kept);
  document.totalFreq = static_cast<double>(counts.weighted);
  document.droppedCount = static_cast<double>(counts.dropped);
  document.droppedFreq = static_cast<double>(counts.weightedDropped);
  document.badWeightCount = static_cast<double>(counts.badWeight);
  document.sigLevel = request.significance;
  constexpr double kPercent = 100.0;
  document.confidenceLevel = request.confidencePercent / kPercent;
  document.listwise = request.listwise;
  AddFields(document, whole, plan, request);
  const RunSums sums = whole.Total();
  for (const TestRequest& asked : request.tests) {
    document.tests.push_back(TestOfRanges(whole, sums, request, asked).Make());
  }
  return document;
}

}  // namespace npar_host
