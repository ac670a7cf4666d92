#include "host/ranges/range_plan.h"

#include <algorithm>
#include <utility>

#include "catalogue/cards/jonckheere_terpstra.h"
#include "catalogue/cards/mann_whitney.h"
#include "catalogue/cards/wilcoxon.h"
#include "host/data/join_words.h"
#include "host/data/number.h"
#include "host/ranges/range_tests.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

constexpr const char* kOthers = "; analyse the records or their counts for others";
constexpr const char* kOneOrder = "sums of sorted ranges have one order; ";

[[noreturn]] void RefuseTest(const std::string& name) {
  std::vector<std::string> names;
  for (const RangeTest& each : AllRangeTests()) names.emplace_back(each.card.name);
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
  const RangeTest* const served = FindRangeTest(test.Test());
  if (served == nullptr) RefuseTest(name);
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

[[noreturn]] void RefuseOrder(const TestRequest& test) {
  throw UsageError(kOneOrder + ("ask for " + std::string(test.Test().name)) +
                   " in an analysis of its own");
}

void CheckTests(const AnalysisRequest& request, catalogue::Family family) {
  if (request.tests.empty()) {
    throw UsageError("sums of sorted ranges serve tests that are named; name one, such as " +
                     std::string(catalogue::mann_whitney::kCard.name));
  }
  for (const TestRequest& test : request.tests) {
    CheckTest(test);
    if (test.Test().family != family) {
      RefuseOrder(test);
    }
  }
}

/// The parameters that the test is given.
FittedDistribution DistributionOf(const TestRequest& test) {
  ReferenceDistribution given;
  given.SetFamily(test.Test().distribution.c_str());
  const std::pair<const char*, double*> options[] = {{"mean", &given.mean},
                                                     {"sd", &given.stdDev},
                                                     {"min", &given.minimum},
                                                     {"max", &given.maximum}};
  for (const auto& [option, parameter] : options) {
    if (test.HasOption(option)) *parameter = RequireNumber(test.ValueOf(option), option);
  }
  return FittedDistribution(given);
}

/// What the tests want of a pass; of the first one the order.
void PlanTests(const std::vector<TestRequest>& tests, RangePlan& plan) {
  plan.order = FindRangeTest(tests.front().Test())->order;
  if (plan.order == RangePlan::Order::Distance) {
    plan.origin = RequireNumber(tests.front().ValueOf("median"), "median");
  }
  for (const TestRequest& test : tests) {
    const RangeTest& served = *FindRangeTest(test.Test());
    if (served.order != plan.order) RefuseOrder(test);
    const bool isOrdered = &served.card == &catalogue::jonckheere_terpstra::kCard;
    if (isOrdered && test.ValueOf("compare") == "pairwise") plan.wantsPairsInOrder = true;
    if (served.fits) plan.fits.push_back(DistributionOf(test));
    plan.needsFurtherPass = plan.needsFurtherPass || served.needsFurtherPass;
  }
}

}  // namespace

std::string RangePlan::Signature() const {
  std::string text = std::to_string(static_cast<int>(order)) + " " + NumberText(origin);
  for (const std::string& field : fields) text += " " + Quoted(field);
  for (const FittedDistribution& fit : fits) {
    text += " " + std::to_string(static_cast<int>(fit.family));
    for (const double given : fit.Parameters()) text += " " + NumberText(given);
  }
  return text + " " + Quoted(group) + (wantsPairsInOrder ? " in pairs" : "");
}

RangePlan PlanRanges(const AnalysisRequest& request) {
  const bool isOne = !request.oneSampleFields.empty();
  const bool isPair = !request.relatedFields.empty();
  const bool isGrouped = !request.independentFields.empty();
  if (static_cast<int>(isOne) + static_cast<int>(isPair) + static_cast<int>(isGrouped) != 1) {
    throw UsageError(std::string(kOneOrder) +
                     "name fields of one family, --one-sample, --related or --independent");
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
    throw UsageError(std::string(kOneOrder) + "name " +
                     (isPair ? "two fields" : "one field and make an analysis for each"));
  }
  PlanTests(request.tests, plan);
  return plan;
}

}  // namespace npar_host
