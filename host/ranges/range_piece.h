#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/data/model.h"
#include "host/ranges/range_plan.h"
#include "ranges/sorted_sums.h"

namespace npar_host {

/// The sums of one sorted piece of the records, or of pieces that follow each other.
class RangePiece {
 public:
  /// Of records that ascend as the plan says; those with missing values may stand anywhere.
  /// InputError for others.
  RangePiece(const RangePlan& plan, const AnalysisRequest& request, ModelledData data);
  /// From what Write gave. InputError for other bytes.
  explicit RangePiece(std::string_view bytes);

  /// Takes the piece that follows; InputError for one of another analysis, or out of order.
  void Append(const RangePiece& next);
  [[nodiscard]] std::string Write() const;

  /// The groups: all categories of the group field, ascending; signs of differences elsewhere.
  [[nodiscard]] const std::vector<Category>& Groups() const { return groups; }
  [[nodiscard]] bool HasTextGroups() const { return storage == Storage::String; }
  [[nodiscard]] Storage GroupStorage() const { return storage; }
  [[nodiscard]] const RecordCounts& Counts() const { return counts; }
  [[nodiscard]] RunSums Total() const { return sums.Total(); }
  /// Units whose difference or distance is 0, which have no rank.
  [[nodiscard]] std::int64_t Zeros() const { return zeros; }
  [[nodiscard]] std::int64_t Pieces() const { return pieces; }
  [[nodiscard]] const std::string& Signature() const { return signature; }

  /// Groups of differences and distances.
  enum Sign : std::size_t { kNegative = 0, kPositive = 1 };

 private:
  /// Takes the groups from the field's categories; the place of each of these among them.
  [[nodiscard]] std::vector<std::size_t> FindGroups(const Field& field);
  void Sum(const RangePlan& plan, const AnalysisRequest& request, ModelledData data);
  void Take(double value, std::size_t group, std::int64_t weight);
  /// The group's place in the order that was given; behind all for others.
  [[nodiscard]] std::size_t PlaceInOrder(const Category& group) const;
  [[nodiscard]] bool Precedes(const Category& a, const Category& b) const;
  [[nodiscard]] RangePiece Among(const std::vector<Category>& all) const;

  std::string signature;  // of the plan
  Storage storage = Storage::Infer;
  std::vector<Category> groups;
  std::vector<std::string> order;  // that was given for groups, which then come first
  RecordCounts counts;
  std::int64_t zeros = 0;
  std::int64_t pieces = 1;
  SortedSums sums{0};
};

}  // namespace npar_host
