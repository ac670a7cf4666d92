#include "host/ranges/range_plan.h"

#include <algorithm>

#include "catalogue/cards/jonckheere_terpstra.h"
#include "catalogue/cards/kruskal_wallis.h"
#include "catalogue/cards/ks_two_sample.h"
#include "catalogue/cards/mann_whitney.h"
#include "catalogue/cards/wilcoxon.h"
#include "catalogue/cards/wilcoxon_pairs.h"
#include "host/data/join_words.h"
#include "host/data/number.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

struct Served {
  const catalogue::Card& card;
  std::vector<std::string> options;  // that sums serve
};

const std::vector<Served>& AllServed() {
  static const std::vector<Served> served = {
      {catalogue::mann_whitney::kCard, {}},
      {catalogue::kruskal_wallis::kCard, {"compare"}},
      {catalogue::jonckheere_terpstra::kCard, {"order"}},
      {catalogue::ks_two_sample::kCard, {}},
      {catalogue::wilcoxon_pairs::kCard, {}},
      {catalogue::wilcoxon::kCard, {"median"}},
  };
  return served;
}

constexpr const char* kOthers = "; analyse the records or their counts for others";

[[noreturn]] void RefuseTest(const std::string& name) {
  std::vector<std::string> names;
  for (const Served& each : AllServed()) names.emplace_back(each.card.name);
  throw UsageError("sums of sorted ranges serve " + JoinWords(names, " and ") + ", not " + name +
                   kOthers);
}

[[noreturn]] void RefuseOption(const std::string& test, const std::string& option,
                               const std::string& value) {
  throw UsageError("sums of sorted ranges do not serve " + test + ":" + option + "=" + value +
                   "; leave it out, or analyse the records");
}

void CheckTest(const TestRequest& test) {
  const std::string name(test.Test().name);
  const auto served = std::ranges::find_if(
      AllServed(), [&test](const Served& each) { return &each.card == &test.Test(); });
  if (served == AllServed().end()) RefuseTest(name);
  for (const catalogue::Option& option : test.Test().options) {
    const std::string key(option.name);
    if (!test.HasOption(key)) continue;
    const bool isServed = std::ranges::find(served->options, key) != served->options.end();
    const bool isStepwise = key == "compare" && test.ValueOf(key) == "stepwise";
    if (!isServed || isStepwise) {
      RefuseOption(name, key, test.ValueOf(key));
    }
  }
  if (name == catalogue::wilcoxon::kCard.name && !test.HasOption("median")) {
    throw UsageError(
        "sums of sorted ranges need the median that wilcoxon is to test; give it as "
        "wilcoxon:median=");
  }
}

void CheckTests(const AnalysisRequest& request, catalogue::Family family) {
  if (request.tests.empty()) {
    throw UsageError("sums of sorted ranges serve tests that are named; name one, such as " +
                     std::string(catalogue::mann_whitney::kCard.name));
  }
  for (const TestRequest& test : request.tests) {
    CheckTest(test);
    if (test.Test().family != family) {
      throw UsageError("sums of sorted ranges have one order; ask for " +
                       std::string(test.Test().name) + " in an analysis of its own");
    }
  }
}

}  // namespace

std::string RangePlan::Signature() const {
  std::string text = std::to_string(static_cast<int>(order)) + " " + NumberText(origin);
  for (const std::string& field : fields) text += " " + Quoted(field);
  return text + " " + Quoted(group);
}

RangePlan PlanRanges(const AnalysisRequest& request) {
  const bool isOne = !request.oneSampleFields.empty();
  const bool isPair = !request.relatedFields.empty();
  const bool isGrouped = !request.independentFields.empty();
  if (static_cast<int>(isOne) + static_cast<int>(isPair) + static_cast<int>(isGrouped) != 1) {
    throw UsageError(
        "sums of sorted ranges have one order; name fields of one family, --one-sample, --related "
        "or --independent");
  }
  RangePlan plan;
  const catalogue::Family family = isOne    ? catalogue::Family::OneSample
                                   : isPair ? catalogue::Family::Related
                                            : catalogue::Family::Independent;
  CheckTests(request, family);
  plan.fields = request.FieldsOf(family);
  plan.group = isGrouped ? request.groupField : std::string();
  const FieldMeasure* const measure = request.MeasureOf(plan.group);
  if (isGrouped && measure != nullptr) plan.groupOrder = measure->categories;
  const std::size_t wanted = isPair ? 2 : 1;
  if (plan.fields.size() != wanted) {
    throw UsageError(std::string("sums of sorted ranges have one order; name ") +
                     (isPair ? "two fields" : "one field and make an analysis for each"));
  }
  plan.needsFurtherPass = std::ranges::any_of(request.tests, [](const TestRequest& test) {
    return &test.Test() == &catalogue::ks_two_sample::kCard;
  });
  if (isPair) plan.order = RangePlan::Order::Difference;
  if (isOne) {
    plan.order = RangePlan::Order::Distance;
    plan.origin = RequireNumber(request.tests.front().ValueOf("median"), "median");
  }
  return plan;
}

}  // namespace npar_host
