#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/render/effect_size.h"
#include "host/render/result_model.h"

namespace npar_host {

/// Where a report shows the extended figures of a test: beside the figures that they complete, and
/// the rest as a table. Everything is empty for a test without them.

/// The text of an extended figure; empty without.
[[nodiscard]] std::string_view ExtendedFigure(const ResultTest& test, std::string_view name);

/// The exact two-sided significance that the document lacks, or that ties change: its name and
/// text.
[[nodiscard]] std::optional<ResultStatistic> ExactBeside(const ResultTest& test);
/// A sentence where the decision would be another one by the exact significance; else empty.
[[nodiscard]] std::string ExactDifference(const ResultDocument& document, const ResultTest& test);

struct Limits {
  std::string_view lower, upper;
  std::string_view method = {};  // where the label does not name it
};
/// Limits of the effect size at the run's confidence level.
[[nodiscard]] std::optional<Limits> EffectLimits(const ResultTest& test, const EffectSize& effect);

/// "95.12 %": a level that limits attain.
[[nodiscard]] std::string AttainedText(std::string_view level);
/// Is a figure of that name a level?
[[nodiscard]] bool IsLevelName(std::string_view name);
/// Why limits of a Hodges-Lehmann estimate cannot have the level that was asked for; empty where
/// they can.
[[nodiscard]] std::string LevelGap(const ResultDocument& document, const ResultTest& test);

/// The medians of the samples, as many as the test compares; empty where they are not known.
[[nodiscard]] std::vector<std::string> SampleMedians(const ResultTest& test);

/// Columns of an extended table that go with the rows of another table.
class ExtendedColumns {
 public:
  /// Without the columns of the names `shown`, which stand there already.
  ExtendedColumns(const ResultTest& test, std::string_view table,
                  const std::vector<std::string_view>& shown = {});
  [[nodiscard]] bool IsEmpty() const { return columns.empty(); }
  [[nodiscard]] std::vector<std::string> Labels() const;
  /// The texts of that row; empty ones for a row that does not exist.
  [[nodiscard]] std::vector<std::string> Cells(std::optional<std::size_t> row) const;
  /// The row of a category's code or a field's index.
  [[nodiscard]] std::optional<std::size_t> RowOf(std::int32_t code) const;
  /// The row of a group of the test, whether it is named by its code or its position.
  [[nodiscard]] std::optional<std::size_t> RowOfGroup(const ResultTest& test,
                                                      std::size_t position) const;

 private:
  [[nodiscard]] std::optional<std::size_t> RowNamed(std::string_view name) const;

  const ResultTable* source = nullptr;
  std::vector<std::size_t> columns;
};

/// Columns beside those of the test's own groups, or of its box plots.
[[nodiscard]] ExtendedColumns GroupColumns(const ResultTest& test);
[[nodiscard]] ExtendedColumns BoxColumns(const ResultTest& test);

/// The samples of a test whose document has no table of them: "Group", "N", "Median" ... with a row
/// for each.
struct ExtendedSamplesTable {
  std::string caption;
  bool isTold = false;  // the caption tells more: what counts as success, the level of limits
  std::vector<std::string> columns;
  std::vector<std::vector<std::string>> rows;  // the title, then texts of figures
};
[[nodiscard]] ExtendedSamplesTable ExtendedSamples(const ResultDocument& document,
                                                   const ResultTest& test);

/// A figure that stands nowhere else, with its limits, or those of two tails.
struct FurtherFigure {
  std::string name;
  std::string label;
  std::vector<std::string_view> figures;  // value, or tails
  std::optional<Limits> limits;
};
[[nodiscard]] std::vector<FurtherFigure> FurtherFigures(const ResultTest& test);
/// "Further figures; limits of 95 %".
[[nodiscard]] std::string FurtherCaption(const ResultDocument& document,
                                         const std::vector<FurtherFigure>& figures);

/// How a renderer shows a figure of that name.
using ShowFigure = std::string (*)(std::string_view name, std::string_view figure);
/// "0.64 [0.5, 0.77]", ".013, .987".
[[nodiscard]] std::string FurtherCell(const FurtherFigure& figure, ShowFigure show);

}  // namespace npar_host
