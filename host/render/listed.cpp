#include "host/render/listed.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace npar_host {
namespace {

constexpr std::size_t kMostOfACode = 3;
constexpr std::size_t kMostOutliers = 20;

double Distance(const ResultOutlier& outlier, double centre) {
  const double value = FigureNumber(outlier.value).value_or(centre);
  return std::isnan(value) ? 0.0 : std::abs(value - centre);
}

}  // namespace

std::vector<ListedMessage> ListedMessages(const ResultTest& test) {
  std::map<std::int32_t, std::size_t> counts;
  for (const ResultMessage& message : test.messages) ++counts[message.code];
  std::map<std::int32_t, std::size_t> listedOf;
  std::vector<ListedMessage> listed;
  for (const ResultMessage& message : test.messages) {
    const std::size_t number = ++listedOf[message.code];
    if (number > kMostOfACode) continue;
    const bool isLast = number == kMostOfACode;
    listed.push_back({&message, isLast ? counts[message.code] - kMostOfACode : 0});
  }
  return listed;
}

std::string MoreMessages(const ListedMessage& listed) {
  return listed.more == 0 ? "" : " (and " + std::to_string(listed.more) + " more of this kind)";
}

std::vector<ResultOutlier> ListedOutliers(const ResultBoxPlot& box) {
  if (box.outliers.size() <= kMostOutliers) return box.outliers;
  constexpr std::size_t kMedian = 2;
  const double centre =
      box.fiveNumbers.empty() ? 0.0 : FigureNumber(box.fiveNumbers[kMedian]).value_or(0.0);
  std::vector<std::size_t> order(box.outliers.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::ranges::stable_sort(order, [&](std::size_t a, std::size_t b) {
    return Distance(box.outliers[a], centre) > Distance(box.outliers[b], centre);
  });
  order.resize(kMostOutliers);
  std::ranges::sort(order);
  std::vector<ResultOutlier> listed;
  listed.reserve(order.size());
  for (const std::size_t i : order) listed.push_back(box.outliers[i]);
  return listed;
}

std::string OutlierCount(const ResultBoxPlot& box) {
  if (box.outliers.size() <= kMostOutliers) return {};
  return std::to_string(box.outliers.size()) + ", the " + std::to_string(kMostOutliers) +
         " furthest: ";
}

}  // namespace npar_host
