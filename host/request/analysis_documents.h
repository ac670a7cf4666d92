#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/data/reshape.h"
#include "host/request/test_request.h"

namespace npar_host {

/// A measurement level given for a field, with the categories in their order where they are given.
struct FieldMeasure {
  std::string field;
  std::string measure;  // "continuous", "ordinal" or "nominal"
  std::vector<std::string> categories;
  bool isInferred = false;  // from the data, not given
};

/// An analysis as it is asked for.
struct AnalysisRequest {
  std::vector<std::string> oneSampleFields;
  std::vector<std::string> relatedFields;
  std::vector<std::string> independentFields;
  std::string groupField;
  std::vector<TestRequest> tests;
  std::vector<FieldMeasure> measures;
  std::vector<Scoring> scorings;
  std::string weightField;
  std::string caseIdField;
  std::vector<std::string> unusedFields;  // of the data, that nobody names: not read
  double significance = 0.05;
  double confidencePercent = 95.0;
  bool listwise = false;
  bool extendedFigures = true;

  [[nodiscard]] const std::vector<std::string>& FieldsOf(catalogue::Family family) const;
  [[nodiscard]] bool HasTests(catalogue::Family family) const;
  /// The measure of a field that is given, or was inferred; null without one.
  [[nodiscard]] const FieldMeasure* MeasureOf(std::string_view field) const;
  /// Every field that the request names, each once.
  [[nodiscard]] std::vector<std::string> NamedFields() const;
};

/// Whether a test can reject at that level.
[[nodiscard]] constexpr bool IsSignificanceLevel(double level) {
  return level > 0.0 && level < 1.0;
}
/// Percentages below 1 are probabilities by mistake.
[[nodiscard]] constexpr bool IsConfidencePercentage(double percentage) {
  return percentage >= 1.0 && percentage < 100.0;
}

/// A confidence level as people give it, a percentage or a proportion below 1, as a percentage.
[[nodiscard]] double ConfidencePercent(double level);

/// "NAME" or "NAME=a<b<c", with backslashes before separators that belong to a name.
[[nodiscard]] FieldMeasure ParseFieldMeasure(std::string_view text, const char* measure);

/// Throws UsageError for a request that can't be carried out: no field at all, independent fields
/// without a group, a test whose family has no field, a test twice, a field with two measures,
/// levels out of range.
void CheckRequest(const AnalysisRequest& request);
/// Throws UsageError for a field that the data do not have.
void CheckFields(const AnalysisRequest& request, const std::vector<std::string>& columns);

/// The parameter document: a family without a test of its own is chosen automatically.
[[nodiscard]] std::string ParameterDocument(const AnalysisRequest& request);
/// The data model: what the request says of fields; the rest is inferred from the data.
[[nodiscard]] std::string DataModelDocument(const AnalysisRequest& request);

}  // namespace npar_host
