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

Requirements RequirementsOf(const AnalysisRequest& request) {
  Requirements requirements;
  requirements.weightField = request.weightField;
  requirements.roundWeight = !request.weightField.empty();
  if (request.listwise) requirements.listwiseDelete = request.NamedFields();
  return requirements;
}

std::int32_t WeightOf(double weight) {
  constexpr double kLargest = 2147483647.0;
  if (weight > kLargest) {
    throw InputError("a record has a weight above 2147483647; make several records of it");
  }
  return static_cast<std::int32_t>(weight);
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

/// Records side by side, then their units.
struct RangeRecords::Block {
  std::array<double, kRecordsAtOnce> first;
  std::array<double, kRecordsAtOnce> second;
  std::array<double, kRecordsAtOnce> weights;
  std::array<double, kRecordsAtOnce> values;
  std::array<std::uint32_t, kRecordsAtOnce> groups;
  std::array<std::int32_t, kRecordsAtOnce> wholeWeights;
};

std::size_t RangeRecords::Read(std::size_t& next, Block& block) const {
  std::size_t behind = next;
  const std::size_t count =
      prepared.records.ReadField(fields.front(), behind, kRecordsAtOnce, block.first.data());
  const auto readBeside = [&](std::size_t field, double* values) {
    std::size_t at = next;
    static_cast<void>(prepared.records.ReadField(field, at, kRecordsAtOnce, values));
  };
  readBeside(fields.back(), block.second.data());
  if (isWeighted) readBeside(weightField, block.weights.data());
  next = behind;
  return count;
}

std::size_t RangeRecords::Compress(std::size_t count, Block& block) const {
  const bool isGrouped = !plan.group.empty();
  std::size_t size = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const double a = block.first[i];
    const double b = block.second[i];
    if (IsMissing(a)) continue;
    double value = a;
    std::uint32_t group = 0;
    if (isGrouped) {
      if (!(b >= 0.0)) continue;
      group = static_cast<std::uint32_t>(b);
    } else if (plan.order != RangePlan::Order::Value) {
      if (IsMissing(b)) continue;
      const double d = plan.order == RangePlan::Order::Difference ? b - a : a - plan.origin;
      if (std::isnan(d)) continue;
      value = std::abs(d);
      group = d < 0.0 ? kNegative : kPositive;
    }
    block.values[size] = value;
    block.groups[size] = group;
    if (isWeighted) block.wholeWeights[size] = WeightOf(block.weights[i]);
    ++size;
  }
  return size;
}

void RangeRecords::ForEach(const Use& use) const {
  const auto block = std::make_unique<Block>();
  std::size_t next = 0;
  while (const std::size_t count = Read(next, *block)) {
    const std::size_t size = Compress(count, *block);
    use({{block->values.data(), size},
         {block->groups.data(), size},
         {block->wholeWeights.data(), isWeighted ? size : 0}});
  }
}

}  // namespace npar_host
