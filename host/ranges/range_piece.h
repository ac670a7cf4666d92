#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/data/model.h"
#include "host/ranges/further_pass.h"
#include "host/ranges/range_plan.h"
#include "host/ranges/range_records.h"
#include "ranges/fitted_pieces.h"
#include "ranges/smirnov_extremes.h"
#include "ranges/sorted_sums.h"

namespace npar_host {

/// The sums of one sorted piece of the records, or of pieces that follow each other.
class RangePiece {
 public:
  /// Of records that ascend as the plan says; those with missing values may stand anywhere.
  /// InputError for others.
  RangePiece(const RangePlan& plan, const RangeRecords& records);
  /// The same in a second pass; the pieces are counted from 0.
  RangePiece(const RangePlan& plan, const RangeRecords& records, const FurtherPass& pass,
             std::size_t piece);
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
  [[nodiscard]] std::size_t Pieces() const { return unitsOfPieces.size(); }
  /// What the distributions of the plan are fitted to.
  [[nodiscard]] const FittedPieces& Fits() const { return fits; }

  [[nodiscard]] bool AreOfFurtherPass() const { return extremes || fits.AreOfFurtherPass(); }
  /// Of a second pass.
  [[nodiscard]] const std::optional<SmirnovExtremes>& Extremes() const { return extremes; }
  /// InputError where the records of a second pass were not those of the first.
  void RequireAllFits(const RangePlan& plan) const;
  /// What a second pass begins with. UsageError for a test of two groups where there is another
  /// number of them.
  [[nodiscard]] FurtherPass NextPass(const RangePlan& plan) const;
  /// UsageError where there are not two groups, with the test that compares two.
  void RequireTwoGroups(const std::string& test) const;
  /// UsageError where another plan was summed.
  void RequirePlan(const RangePlan& plan) const;

 private:
  /// Takes the groups from the field's categories; the place of each of these among them.
  [[nodiscard]] std::vector<std::size_t> FindGroups(const Field& field);
  /// InputError for a piece of another analysis.
  void CheckJoins(const RangePiece& next) const;
  /// Takes units for the extremes of two groups.
  void TakeExtremes(const Units& units, const std::vector<std::string>& two);
  /// Sums the records; `also` takes them with the places of their groups.
  void Sum(const RangePlan& plan, const RangeRecords& records, const RangeRecords::Use& also);
  /// The group's place in the order that was given; behind all for others.
  [[nodiscard]] std::size_t PlaceInOrder(const Category& group) const;
  [[nodiscard]] bool Precedes(const Category& a, const Category& b) const;
  void CountUnits();
  [[nodiscard]] RangePiece Among(const std::vector<Category>& all) const;

  std::string signature;  // of the plan
  Storage storage = Storage::Infer;
  std::vector<Category> groups;
  std::vector<std::string> order;  // that was given for groups, which then come first
  RecordCounts counts;
  std::int64_t zeros = 0;
  SortedSums sums{0};
  std::vector<std::vector<std::int64_t>> unitsOfPieces;  // by piece, then by group
  std::optional<SmirnovExtremes> extremes;
  FittedPieces fits;
};

}  // namespace npar_host
