#include "report/box_plot_table.h"

#include <string>
#include <vector>

#include "report/elements.h"

namespace {

/// Both lists from their ends to their fronts, the high outliers before the low ones.
template <typename TextOf>
std::string JoinOutliers(const GroupBoxPlot& plot, TextOf textOf) {
  std::vector<std::string> texts;
  for (const auto* list : {&plot.HighOutliers(), &plot.LowOutliers()}) {
    for (auto outlier = list->rbegin(); outlier != list->rend(); ++outlier) {
      texts.push_back(textOf(*outlier));
    }
  }
  return JoinTexts(texts);
}

std::string CaseIdText(double caseId) {
  return caseId == QDMV::gMissingValue ? NumberText(caseId) : IntegerText(TruncateToInt64(caseId));
}

}  // namespace

void AddBoxPlotTables(XMLElement& parent, const GroupBoxPlot& plot, bool hasCaseIds) {
  XMLElement* box = AddSimpleTable(parent, "Box", "",
                                   "smallestNonOutlier;25perc;50perc;75perc;largestNonOutlier");
  const HingeWalk& hinges = plot.Hinges();
  AddRow(*box, JoinNumbers({plot.SmallestNonOutlier(), hinges.FirstQuartile(), hinges.Median(),
                            hinges.ThirdQuartile(), plot.LargestNonOutlier()}));

  XMLElement* outliers =
      AddSimpleTable(parent, "Outliers", "Values;CaseID", IntegerText(plot.GroupCode()));
  AddRow(*outliers, JoinOutliers(plot, [](const GroupBoxPlot::Outlier& outlier) {
    return NumberText(outlier.value);
  }));
  AddRow(*outliers, hasCaseIds ? JoinOutliers(plot,
                                              [](const GroupBoxPlot::Outlier& outlier) {
                                                return CaseIdText(outlier.caseId);
                                              })
                               : std::string());
}

void AddBoxPlotInfo(XMLElement& algorithm, const GroupTally& tally, std::int64_t groupCount,
                    const std::vector<double>& meanRanks) {
  XMLElement* info = AddStructuredTable(algorithm, "BoxPlotInfo");
  AddAttributeRow(*info, "GroupFieldIndex", tally.GetKey().groupVariable);
  AddAttributeRow(*info, "GroupCount", groupCount);
  for (std::size_t place = 0; place < tally.Groups().size(); ++place) {
    const std::int32_t code = tally.Groups()[place];
    XMLElement* group = AddStructuredTable(*info, "Group" + std::to_string(code));
    AddAttributeRow(*group, "GroupIndex", code);
    if (!meanRanks.empty()) AddAttributeRow(*group, "MeanOfRank", meanRanks[place]);
    AddBoxPlotTables(*group, tally.BoxPlots()[place], tally.GetKey().caseIdVariable >= 0);
  }
}
