#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/render/adjustment.h"
#include "host/render/text_layout.h"
#include "host/request/analysis_documents.h"

namespace npar_host {

/// What a program chooses of an analysis, option by option.
struct Choices {
  AnalysisRequest request;
  Adjustment adjustment = Adjustment::None;  ///< over tests
  Adjustment pairAdjustment = Adjustment::Bonferroni;
  TextStyle style;
  unsigned threads = 0;  ///< the most that a run may use; 0: as many as the library likes

  /// Sets an option of npar analyse by its name without dashes, or adds to a list. Throws
  /// UsageError for another, and for a value that it can't take.
  void Set(std::string_view option, const std::string& value);
  /// Makes a field ordinal; the categories ascending.
  void SetOrder(const std::string& field, std::vector<std::string> categories);
};

}  // namespace npar_host
