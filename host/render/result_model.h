#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/render/text_rows.h"

namespace npar_host {

struct ResultCategory {
  std::string value;
  std::string label;  // empty without one
};

/// How often a value occurred (a field's category code, or the representative of a bin).
struct ResultBin {
  double count = 0.0;
  double value = 0.0;
};

/// A named figure in the document's order, as the document writes it. `group` is the name of the
/// table inside the statistics that holds it ("MinimumRuns"), mostly empty.
struct ResultStatistic {
  std::string group;
  std::string name;
  std::string text;
};

/// A table of texts.
struct ResultTable {
  std::string name;
  std::vector<std::string> rowNames;
  std::vector<std::string> columnNames;
  TextRows rows;

  [[nodiscard]] bool Empty() const { return rows.empty(); }
};

struct ResultDistribution {
  std::vector<ResultStatistic> figures;  // "TotalN", "Min", ...
  std::vector<ResultBin> bins;
};

struct ResultField {
  std::string name;
  std::string label;  // empty without one
  bool isCategorical = false;
  std::string dataType;
  bool isNominal = false;  // where the run's host has told
  std::vector<ResultCategory> categories;
  std::optional<ResultDistribution> distribution;

  /// What a person calls the field: its label, or else its name.
  [[nodiscard]] const std::string& Title() const { return label.empty() ? name : label; }
};

struct ResultMessage {
  std::int32_t code = 0;
  std::string type;  // "error", "warning" or "helpMessage"
  std::vector<std::string> parameters;
  std::vector<std::pair<std::string, std::string>> namedParameters;
};

/// A group of records, or one of several related variables.
struct ResultGroup {
  std::vector<std::int32_t> codes;  // category codes of the group field, or the variable's index
  std::vector<ResultStatistic> figures;  // "N", "MeanOfRank", ...
  std::vector<ResultBin> bins;
};

struct ResultOutlier {
  std::string value;
  std::string caseId;    // empty without one
  std::string caseName;  // what the data call the case, where the reader of the data has told

  /// What a person calls the case; empty without an identifier.
  [[nodiscard]] const std::string& Case() const { return caseName.empty() ? caseId : caseName; }
};

struct ResultBoxPlot {
  std::int32_t code = 0;  // the group's category code
  std::optional<std::string> meanRank;
  std::vector<std::string> fiveNumbers;  // fence, quartile, median, quartile, fence; or empty
  std::vector<ResultOutlier> outliers;
};

/// How significances are adjusted for several tests.
enum class Adjustment { None, Bonferroni, Holm, BenjaminiHochberg };

/// Pairwise comparisons, or ranges of the stepwise procedure.
struct ResultComparison {
  bool present = false;
  std::vector<std::int32_t> order;                 // group codes or variable indices, by position
  std::vector<std::string> values;                 // mean ranks, medians or the like, by position
  ResultTable content;                             // its first two columns are positions
  Adjustment adjustment = Adjustment::Bonferroni;  // of the significances that pairs are judged by
};

struct ResultInterval {
  std::string method;  // empty where the estimate has one method only
  std::string estimate;
  std::string lower;
  std::string upper;
};

/// What a test tells beside its result, where the run asked for it.
struct ResultExtended {
  std::vector<ResultStatistic> figures;
  std::vector<ResultTable> tables;  // named; rows are groups, fields or categories
};

/// One test or estimate.
struct ResultTest {
  std::string name;            // "RSign"
  std::string type;            // "hypothesis_test" or "confidence_interval"
  std::string classification;  // "One_Sample", "Related_Samples", "Independent_Samples"
  std::string decision;        // "reject", "retain", "unknown"; empty for estimates
  std::string conditionKey;
  std::vector<std::string> conditionParameters;
  std::vector<ResultMessage> messages;
  std::vector<ResultStatistic> statistics;
  std::vector<ResultStatistic> details;    // figures of other tables, such as the runs' parameters
  std::vector<std::string> unknownValues;  // given category values that the data do not have
  std::vector<ResultTable> tables;         // observed against hypothesised, cross tables
  std::vector<ResultInterval> intervals;
  std::vector<ResultGroup> groups;
  std::optional<ResultDistribution> differences;  // of pairs, or of one sample's values
  std::vector<ResultBoxPlot> boxPlots;
  ResultComparison pairwise;
  ResultComparison stepwise;
  std::optional<ResultExtended> extended;
  std::optional<double> adjustedSignificance;  // over all tests, where that was asked for
  std::string made;                            // how, where not from records: "from sorted ranges"
  // Of the run, where its host has told:
  std::string chosenBecause;           // why the test was chosen; empty: it was asked for
  std::vector<std::string> successes;  // the categories that count as success in Cochran's test
  bool groupsDescend = false;          // a trend over groups is tested from the last one down

  /// The text of a statistic outside inner tables, or null.
  [[nodiscard]] const std::string* Statistic(std::string_view name) const;
  [[nodiscard]] bool Failed() const;
  /// Indices of the fields that the condition names in parameter `position`; empty where it names
  /// none that exists.
  [[nodiscard]] std::vector<std::size_t> ConditionFields(std::size_t position,
                                                         std::size_t fieldCount) const;
};

/// A field as the run's host read it.
struct TracedField {
  std::string name;
  std::string measure;      // "continuous", "ordinal" or "nominal"
  std::size_t missing = 0;  // cells
};

/// Where a report comes from; the document itself does not tell.
struct ReportTrace {
  std::string file;     // of the data
  std::string bytes;    // its size; empty where that is not known
  std::string changed;  // when it was last written, "2026-01-31 12:00:00 UTC"; empty likewise
  std::string command;  // as typed
  std::string program;  // "npar 1.0.0"
  std::string made;     // when, likewise
  std::vector<TracedField> fields;
};

/// What the records hold, for plots of the data themselves; the document itself does not tell. A
/// record that counts more than once stands that often.
struct RecordValues {
  /// By the document's fields, then by record: a number or a category's code; not a number where
  /// it is missing.
  std::vector<std::vector<double>> fields;
};

/// A whole run.
struct ResultDocument {
  std::string application;
  std::string applicationVersion;
  std::string modelId;
  double totalCount = 0.0;    // records
  double totalFreq = 0.0;     // their weights
  double droppedCount = 0.0;  // records with missing values
  double droppedFreq = 0.0;   // their weights
  double badWeightCount = 0.0;
  double sigLevel = 0.05;
  double confidenceLevel = 0.95;
  bool listwise = false;
  std::vector<ResultField> fields;
  std::vector<ResultTest> tests;
  std::optional<ReportTrace> trace;
  std::optional<RecordValues> values;        // of few records, where the run's host has told
  Adjustment adjustment = Adjustment::None;  // of significances over the tests
};

/// The bins of distributions are most of a document; figures don't need them.
enum class Bins { Read, LeftOut };
/// Reads a result document; `name` names it in messages. Throws InputError for anything else. A
/// text that is given away is freed as soon as it is parsed.
[[nodiscard]] ResultDocument ReadResultDocument(std::string text, std::string_view name,
                                                Bins bins = Bins::Read);

/// The name of a case whose identifier is that number; empty where the number is all there is.
using CaseNames = std::function<std::string(double identifier)>;
/// Names the outliers' cases: a document holds numbers only, the data may have names for them.
void NameCases(ResultDocument& document, const CaseNames& names);

/// The number that a figure's text spells; nothing for an empty, missing or other text.
[[nodiscard]] std::optional<double> FigureNumber(std::string_view text);

}  // namespace npar_host
