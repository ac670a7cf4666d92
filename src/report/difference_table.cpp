#include "report/difference_table.h"

#include "report/elements.h"

void AddDifferenceTable(XMLElement& algorithm, const PairedDifferences& differences) {
  XMLElement* table = AddStructuredTable(algorithm, "ContinuousDistribution");
  AddAttributeRow(*table, "NegativeDifferences", differences.NegativeCount());
  AddAttributeRow(*table, "Ties", differences.TieCount());
  AddAttributeRow(*table, "PositiveDifferences", differences.PositiveCount());
  AddIntervalTable(*table, differences.Bins());
}
