#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "foundation/names.h"
#include "kit/univariate.h"
#include "kit/var_info.h"

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
  /// Takes over only the elements of `results`, and those when Write is called.
  NPARResultWriter(const QDVarList* variables, const UnivariateResults* univariates,
                   const std::vector<XMLElement*>* results, bool analysisMissing, double sigLevel,
                   double confidenceLevel, std::int32_t weightIndex, std::int32_t caseIdIndex);

  /// Writes the whole document.
  QDStatus Write(std::ostream& stream, std::int64_t modelId, const NPARRunInfo& runInfo);

 private:
  void WriteHeader(const NPARRunInfo& runInfo);
  void WriteDataDictionary();
  void WriteTests();
  void WriteFieldInfos();

  const QDVarList* variables;
  const UnivariateResults* univariates;
  const std::vector<XMLElement*>* results;
  bool analysisMissing;
  double sigLevel;
  double confidenceLevel;
  std::int32_t weightIndex;
  std::int32_t caseIdIndex;
  QDStatus status;
  NPARVarInfo varInfo;
  XMLElement* root = nullptr;
  XMLElement* output = nullptr;
};
