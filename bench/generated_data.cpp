#include "bench/generated_data.h"

#include <cmath>
#include <utility>

#include "host/data/model.h"

namespace {

using npar_host::Category;
using npar_host::Field;

/// SplitMix64: G. L. Steele, D. Lea, C. H. Flood, Fast splittable pseudorandom number generators,
/// OOPSLA 2014. Plain integers, so that no library's generator decides what is measured.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state(seed) {}
  std::uint64_t Bits() {
    state += 0x9E3779B97F4A7C15U;
    std::uint64_t z = state;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
    return z ^ (z >> 31);
  }
  /// In [0, 1).
  double Uniform() { return static_cast<double>(Bits() >> 11) * 0x1p-53; }
  std::uint64_t Below(std::uint64_t limit) { return Bits() % limit; }
  /// Mean 0, variance 1, near normal up to two deviations: the sum of four uniforms.
  double NearNormal() {
    const double sum = Uniform() + Uniform() + Uniform() + Uniform();
    return (sum - 2.0) * std::sqrt(3.0);
  }

 private:
  std::uint64_t state;
};

constexpr double kStepsPerDeviation = 15.0;  // of coarse values
constexpr double kGroupShift = 1e-4;         // the alternative is there, and small
constexpr std::uint64_t kMissingOneIn = 20;
constexpr std::uint64_t kLargestWeight = 5;

std::string ModelText(const DataShape& shape) {
  npar_host::DataModel model;
  const auto add = [&model](std::string name) -> Field& {
    Field& field = model.fields.emplace_back();
    field.name = std::move(name);
    return field;
  };
  for (std::size_t i = 0; i < shape.fields; ++i) add(std::string("x").append(std::to_string(i)));
  if (shape.groups > 0) {
    Field& group = add("group");
    group.measure = npar_host::Measure::Nominal;
    group.storage = npar_host::Storage::String;
    for (std::size_t code = 0; code < shape.groups; ++code) {
      Category category;
      category.text = std::string("g").append(std::to_string(code));
      group.categories.push_back(std::move(category));
    }
  }
  if (shape.hasWeight) add("weight").role = npar_host::Role::FrequencyWeight;
  npar_host::RecordCounts counts;
  counts.kept = counts.weighted = static_cast<std::int64_t>(shape.records);
  return npar_host::WriteModel(model, &counts);
}

}  // namespace

npar_host::RecordView GeneratedData::View() const {
  std::vector<npar_host::FieldView> fields(columns.size());
  for (std::size_t i = 0; i < columns.size(); ++i) {
    fields[i].numbers.Append(columns[i].data(), columns[i].size(), nullptr);
  }
  return {std::move(fields), Records()};
}

GeneratedData Generate(const DataShape& shape) {
  Random random(20);
  const std::size_t width =
      shape.fields + (shape.groups > 0 ? 1U : 0U) + (shape.hasWeight ? 1U : 0U);
  GeneratedData data{std::vector<std::vector<double>>(width), ModelText(shape)};
  for (std::vector<double>& column : data.columns) column.reserve(shape.records);
  for (std::size_t record = 0; record < shape.records; ++record) {
    std::vector<double>* column = data.columns.data();
    const std::uint64_t group = shape.groups > 0 ? random.Below(shape.groups) : 0;
    for (std::size_t i = 0; i < shape.fields; ++i) {
      double x = random.NearNormal() + kGroupShift * static_cast<double>(group + i);
      if (shape.isCoarse) x = std::floor(x * kStepsPerDeviation);
      const bool isMissing = shape.hasMissing && random.Below(kMissingOneIn) == 0;
      column++->push_back(isMissing ? npar_host::kMissingNumber : x);
    }
    if (shape.groups > 0) column++->push_back(static_cast<double>(group));
    if (shape.hasWeight) {
      column++->push_back(static_cast<double>(1 + random.Below(kLargestWeight)));
    }
  }
  return data;
}
