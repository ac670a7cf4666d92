#include "host/ranges/range_records.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <utility>

#include "host/data/input_error.h"

namespace npar_host {
namespace {

constexpr std::size_t kRecordsAtOnce = 2048;
using Block = std::array<double, kRecordsAtOnce>;

Requirements RequirementsOf(const AnalysisRequest& request) {
  Requirements requirements;
  requirements.weightField = request.weightField;
  requirements.roundWeight = !request.weightField.empty();
  if (request.listwise) requirements.listwiseDelete = request.NamedFields();
  return requirements;
}

std::int64_t WeightOf(double weight) {
  constexpr double kLargest = 2147483647.0;
  if (weight > kLargest) {
    throw InputError("a record has a weight above 2147483647; make several records of it");
  }
  return static_cast<std::int64_t>(weight);
}

bool IsMissing(double value) { return value == kMissingNumber || std::isnan(value); }

}  // namespace

RangeRecords::RangeRecords(const RangePlan& plan, const AnalysisRequest& request, ModelledData data)
    : plan(plan),
      prepared(Prepare(RequirementsOf(request), std::move(data))),
      isWeighted(!request.weightField.empty()) {
  for (const std::string& name : plan.fields) fields.push_back(IndexOf(name));
  if (!plan.group.empty()) fields.push_back(IndexOf(plan.group));
  if (isWeighted) weightField = IndexOf(request.weightField);
}

std::size_t RangeRecords::IndexOf(const std::string& name) const {
  const auto found = std::ranges::find(prepared.model.fields, name, &Field::name);
  return static_cast<std::size_t>(found - prepared.model.fields.begin());
}

void RangeRecords::ForEach(const Use& use) const {
  auto first = std::make_unique<Block>();
  auto second = std::make_unique<Block>();
  auto weights = std::make_unique<Block>();
  std::size_t next = 0;
  const auto read = [&](std::size_t field, Block& block) {
    std::size_t at = next;
    const std::size_t count = prepared.records.ReadField(field, at, kRecordsAtOnce, block.data());
    return std::pair(count, at);
  };
  while (true) {
    const auto [count, behind] = read(fields.front(), *first);
    if (count == 0) return;
    static_cast<void>(read(fields.back(), *second));
    if (isWeighted) static_cast<void>(read(weightField, *weights));
    for (std::size_t i = 0; i < count; ++i) {
      const double a = (*first)[i];
      const double b = (*second)[i];
      if (IsMissing(a)) continue;
      const std::int64_t weight = isWeighted ? WeightOf((*weights)[i]) : 1;
      if (plan.order == RangePlan::Order::Value) {
        if (b >= 0.0) use(a, static_cast<std::size_t>(b), weight);
        continue;
      }
      if (IsMissing(b)) continue;
      const double d = plan.order == RangePlan::Order::Difference ? b - a : a - plan.origin;
      if (!std::isnan(d)) use(std::abs(d), d < 0.0 ? kNegative : kPositive, weight);
    }
    next = behind;
  }
}

}  // namespace npar_host
