#include "report/comparison_tables.h"

#include <string>
#include <vector>

#include "kit/order/interruption.h"
#include "report/elements.h"

namespace {

void AddInfoTable(XMLElement& parent, std::string_view name,
                  const std::vector<ComparedSample>& samples, std::string_view values) {
  std::vector<std::int32_t> indices;
  std::vector<double> measures;
  for (const ComparedSample& sample : samples) {
    indices.push_back(sample.index);
    measures.push_back(sample.measure);
  }
  XMLElement* table = AddSimpleTable(parent, name, "", "IndexOrder;Value");
  AddRow(*table, JoinIntegers(indices));
  AddRow(*table, values.empty() ? JoinNumbers(measures) : std::string(values));
}

/// ";" and the number; nothing after the ";" for a figure that does not exist.
void AppendCell(std::string& row, double value) {
  row += ';';
  if (value != QDMV::gMissingValue) row += NumberText(value);
}

void AddPairs(XMLElement& parent, const std::vector<PairwiseComparison>& pairs) {
  XMLElement* table = AddSimpleTable(
      parent, "Content", "",
      "Sample1;Sample2;TestStatistic;StandardError;StandardTestStatistic;Sig;AdjSig");
  std::string row;
  SparseCheck check;
  for (const PairwiseComparison& pair : pairs) {
    check.Step();
    row = IntegerText(pair.sample1);
    row += ';';
    row += IntegerText(pair.sample2);
    AppendCell(row, pair.figures.testStatistic);
    AppendCell(row, pair.figures.standardError);
    AppendCell(row, pair.figures.standardTestStatistic);
    AppendCell(row, pair.figures.sig);
    AppendCell(row, pair.adjSig);
    AddRow(*table, row);
  }
}

void AddSubsets(XMLElement& parent, const std::vector<HomogeneousSubset>& subsets) {
  XMLElement* table = AddSimpleTable(
      parent, "Content", "",
      "FirstPosition;LastPosition;TestStatistic;StandardError;StandardTestStatistic;Sig;AdjSig");
  for (const HomogeneousSubset& subset : subsets) {
    std::string row = std::to_string(subset.range.first) + ';' + std::to_string(subset.range.last);
    row += ';' + NumberOrMissingText(subset.figures.testStatistic);
    row += ";;;" + NumberOrMissingText(subset.figures.sig);
    row += ';' + NumberOrMissingText(subset.adjSig);
    AddRow(*table, row);
  }
}

}  // namespace

void WriteComparison(XMLElement& algorithm, const MultipleComparison& comparison,
                     std::string_view pairwiseValues) {
  if (!comparison.IsDone()) return;
  if (comparison.WantsPairwise() && !comparison.GetPairs().empty()) {
    XMLElement* result = AddStructuredTable(algorithm, "PairwiseResult");
    AddInfoTable(*result, "PairwiseInfo", comparison.GetSamples(), pairwiseValues);
    AddPairs(*result, comparison.GetPairs());
  }
  if (comparison.WantsStepwise()) {
    XMLElement* result = AddStructuredTable(algorithm, "StepwiseResult");
    AddInfoTable(*result, "StepwiseInfo", comparison.GetSamples(), {});
    AddSubsets(*result, comparison.GetSubsets());
  }
}
