#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/render/result_model.h"

namespace npar_host {

/// A message as a page shows it.
struct ListedMessage {
  const ResultMessage* message = nullptr;
  std::size_t more = 0;  // further ones of the same code that are not listed
};

/// A test's messages; of a code that comes for one sample after the other, the first ones only.
[[nodiscard]] std::vector<ListedMessage> ListedMessages(const ResultTest& test);
/// " (and 7 more of this kind)"; empty for none.
[[nodiscard]] std::string MoreMessages(const ListedMessage& listed);

/// The outliers that a page lists, in the document's order: of many those furthest from the box.
[[nodiscard]] std::vector<ResultOutlier> ListedOutliers(const ResultBoxPlot& box);
/// "25, the 20 furthest: "; empty where all are listed.
[[nodiscard]] std::string OutlierCount(const ResultBoxPlot& box);

}  // namespace npar_host
