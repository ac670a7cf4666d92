#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "foundation/names.h"
#include "kit/contract/var_info.h"
#include "kit/summaries/univariate.h"

/// What the document learns of the host.
struct NPARRunInfo {
  bool reserved = false;
  std::string applicationName;
  std::string applicationVersion;
  std::string copyright;
};

/// Wraps the tests' elements into the one document of a run: counts, data dictionary, tests,
/// distributions.
class NPARResultWriter {
 public:
  /// Takes over the tests' elements, and nothing else.
  NPARResultWriter(const QDVarList* variables, const UnivariateResults* univariates,
                   std::vector<std::unique_ptr<XMLElement>> results, bool analysisMissing,
                   double sigLevel, double confidenceLevel, std::int32_t weightIndex,
                   std::int32_t caseIdIndex);

  /// Writes the whole document, once: the elements go into it. 220012 where the stream took no
  /// more.
  QDStatus Write(std::ostream& stream, std::int64_t modelId, const NPARRunInfo& runInfo);

 private:
  void WriteCounts(XMLElement& root, const std::string& modelId) const;
  void WriteHeader(const NPARRunInfo& runInfo);
  void WriteDataDictionary();
  void WriteDataField(XMLElement& dictionary, std::int32_t index) const;
  void WriteTests();
  void WriteFieldInfos();
  void WriteContinuousInfo(XMLElement& info, std::int32_t index) const;
  void WriteCategoricalInfo(XMLElement& info, std::int32_t index) const;

  const QDVarList* variables;
  const UnivariateResults* univariates;
  std::vector<std::unique_ptr<XMLElement>> results;
  bool analysisMissing;
  double sigLevel;
  double confidenceLevel;
  std::int32_t weightIndex;
  std::int32_t caseIdIndex;
  NPARVarInfo varInfo;
  XMLElement* output = nullptr;  // "NPAROutput", of the document that is being built
};
