#include "host/ranges/range_piece.h"

#include <algorithm>
#include <span>
#include <utility>

#include "catalogue/cards/ks_two_sample.h"
#include "host/data/input_error.h"
#include "host/data/number.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

constexpr const char* kFormat = "npar sums of sorted ranges 2";
constexpr const char* kOtherAnalysis =
    "the sums of a piece are of another analysis; sum it with the same options";
constexpr const char* kOtherRecords =
    "the records of a piece are not those of the first pass; keep the sorted pieces for both";
constexpr const char* kTooMany = "there are more than 2^40 records; take smaller weights";
constexpr const char* kOrderRemedy = "; sort it ascending, equal values and missing ones anyhow";

template <typename Counts, typename See>
void VisitCounts(Counts& counts, See& see) {
  for (auto* count : {&counts.kept, &counts.weighted, &counts.dropped, &counts.badWeight,
                      &counts.weightedDropped}) {
    see(*count);
  }
}

/// Where these groups stand among all.
std::vector<std::size_t> PlacesOf(const std::vector<Category>& groups,
                                  const std::vector<Category>& all) {
  std::vector<std::size_t> places;
  for (const Category& group : groups) {
    const auto found = std::ranges::find(all, group.text, &Category::text);
    places.push_back(static_cast<std::size_t>(found - all.begin()));
  }
  return places;
}

void AddCounts(RecordCounts& counts, const RecordCounts& more) {
  counts.kept += more.kept;
  counts.weighted += more.weighted;
  counts.dropped += more.dropped;
  counts.badWeight += more.badWeight;
  counts.weightedDropped += more.weightedDropped;
}

void CheckPairs(std::size_t groups) {
  if (groups <= PairSums::kMostGroups) return;
  throw InputError("sums of sorted ranges compare the pairs of up to " +
                   std::to_string(PairSums::kMostGroups) +
                   " groups in their order; leave compare= out, or analyse the records");
}

}  // namespace

RangePiece::RangePiece(const RangePlan& plan, const RangeRecords& records)
    : signature(plan.Signature()),
      order(plan.groupOrder),
      counts(records.Counts()),
      fits(plan.fits) {
  Sum(plan, records, [](const Units&) {});
}

RangePiece::RangePiece(const RangePlan& plan, const RangeRecords& records, const FurtherPass& pass,
                       std::size_t piece)
    : signature(plan.Signature()), order(plan.groupOrder), counts(records.Counts()) {
  if (pass.signature != signature) throw InputError(kOtherAnalysis);
  if (plan.fits.empty()) {
    extremes = pass.Start(piece);
    Sum(plan, records, [&](const Units& units) { TakeExtremes(units, pass.groups); });
    return;
  }
  fits = pass.StartFits(plan.fits, piece);
  Sum(plan, records, [](const Units&) {});
  fits.Finish();
}

void RangePiece::TakeExtremes(const Units& units, const std::vector<std::string>& two) {
  for (std::size_t i = 0; i < units.Size(); ++i) {
    const std::string& text = groups[units.groups[i]].text;
    const auto group = std::ranges::find(two, text) - two.begin();
    if (group >= 2) throw InputError(kOtherRecords);
    extremes->Take(units.values[i], static_cast<std::size_t>(group), units.WeightAt(i));
  }
}

void RangePiece::Sum(const RangePlan& plan, const RangeRecords& records,
                     const RangeRecords::Use& also) {
  const bool isSigned = plan.order != RangePlan::Order::Value;
  std::vector<std::size_t> placeOfCode = {RangeRecords::kNegative, RangeRecords::kPositive};
  if (isSigned) {
    groups = {{"negative", 0.0, {}, false}, {"positive", 1.0, {}, false}};
  } else if (plan.group.empty()) {
    groups = {{"all", 0.0, {}, false}};
  } else {
    placeOfCode = FindGroups(records.GroupField());
  }
  if (plan.wantsPairsInOrder) CheckPairs(groups.size());
  sums = SortedSums(groups.size(), plan.wantsPairsInOrder);
  std::vector<std::uint32_t> places;
  records.ForEach([&](Units units) {
    places.clear();
    for (const std::uint32_t group : units.groups) {
      places.push_back(static_cast<std::uint32_t>(placeOfCode[group]));
    }
    units.groups = places;
    for (std::size_t i = 0; i < units.Size(); ++i) {
      const std::int64_t weight = units.WeightAt(i);
      if (isSigned && units.values[i] == 0.0) {
        zeros += weight;
      } else if (!sums.Take(units.values[i], places[i], weight)) {
        throw InputError(std::string("the records of a piece do not ascend") + kOrderRemedy);
      }
      if (sums.Count() > RunSums::kMostUnits) throw InputError(kTooMany);
    }
    fits.Take(units);
    also(units);
  });
  CountUnits();
}

void RangePiece::CountUnits() {
  const RunSums total = sums.Total();
  std::vector<std::int64_t>& units = unitsOfPieces.emplace_back();
  for (const RunSums::Group& group : total.Groups()) units.push_back(group.count);
}

std::vector<std::size_t> RangePiece::FindGroups(const Field& field) {
  storage = field.storage;
  groups = field.categories;
  for (Category& group : groups) {
    const std::size_t place = PlaceInOrder(group);
    if (place < order.size()) group.text = order[place];
  }
  std::vector<Category> found = groups;
  std::ranges::sort(groups,
                    [this](const Category& a, const Category& b) { return Precedes(a, b); });
  return PlacesOf(found, groups);
}

std::size_t RangePiece::PlaceInOrder(const Category& group) const {
  const auto isIt = [&](const std::string& text) {
    double number = 0.0;
    if (storage == Storage::String) return text == group.text;
    return ParseNumber(text, number) && number == group.number;
  };
  return static_cast<std::size_t>(std::ranges::find_if(order, isIt) - order.begin());
}

bool RangePiece::Precedes(const Category& a, const Category& b) const {
  const std::size_t placeOfA = PlaceInOrder(a);
  const std::size_t placeOfB = PlaceInOrder(b);
  if (placeOfA != placeOfB) return placeOfA < placeOfB;
  return storage == Storage::String ? a.text < b.text : a.number < b.number;
}

/// The same with all groups of an analysis.
RangePiece RangePiece::Among(const std::vector<Category>& all) const {
  RangePiece piece = *this;
  piece.groups = all;
  const std::vector<std::size_t> places = PlacesOf(groups, all);
  piece.sums = sums.Regrouped(places, all.size());
  for (std::vector<std::int64_t>& units : piece.unitsOfPieces) {
    std::vector<std::int64_t> regrouped(all.size());
    for (std::size_t i = 0; i < units.size(); ++i) regrouped[places[i]] = units[i];
    units = std::move(regrouped);
  }
  return piece;
}

void RangePiece::CheckJoins(const RangePiece& next) const {
  if (next.signature != signature || next.order != order ||
      next.sums.HasPairs() != sums.HasPairs() ||
      next.extremes.has_value() != extremes.has_value()) {
    throw InputError(kOtherAnalysis);
  }
  if (!groups.empty() && !next.groups.empty() && next.storage != storage) {
    throw InputError(
        "the group field holds numbers in one piece and texts in another; give all of "
        "them one type");
  }
  if (sums.Count() + next.sums.Count() > RunSums::kMostUnits) throw InputError(kTooMany);
  if (!fits.Precede(next.fits)) throw InputError(kOtherRecords);
}

void RangePiece::Append(const RangePiece& next) {
  CheckJoins(next);
  if (groups.empty()) storage = next.storage;
  std::vector<Category> all = groups;
  for (const Category& group : next.groups) {
    if (std::ranges::find(all, group.text, &Category::text) == all.end()) all.push_back(group);
  }
  std::ranges::sort(all, [this](const Category& a, const Category& b) { return Precedes(a, b); });
  if (sums.HasPairs()) CheckPairs(all.size());
  const RangePiece following = next.Among(all);
  std::optional<SmirnovExtremes> joined = extremes;
  if (joined && !joined->Append(*next.extremes)) throw InputError(kOtherRecords);
  // With all of their pieces, so that this is not for every piece.
  if (all.size() > groups.size()) *this = Among(all);
  if (!sums.Append(following.sums)) {
    throw InputError(std::string("a piece begins below the end of the one before") + kOrderRemedy);
  }
  AddCounts(counts, next.counts);
  zeros += next.zeros;
  unitsOfPieces.insert(unitsOfPieces.end(), following.unitsOfPieces.begin(),
                       following.unitsOfPieces.end());
  extremes = joined;
  fits.Append(next.fits);
}

void RangePiece::RequireTwoGroups(const std::string& test) const {
  if (groups.size() == 2) return;
  throw UsageError(test + " compares two groups, and the field of groups has " +
                   std::to_string(groups.size()) +
                   "; filter the records, or ask for a test of several groups");
}

FurtherPass RangePiece::NextPass(const RangePlan& plan) const {
  FurtherPass pass;
  pass.signature = signature;
  pass.groups.resize(2);
  pass.before.resize(Pieces());
  pass.fits = fits.NextPass(plan.fits);
  if (!plan.fits.empty()) return pass;
  RequireTwoGroups(std::string(catalogue::ks_two_sample::kCard.name));
  pass.groups = {groups[0].text, groups[1].text};
  for (std::size_t i = 0; i < Pieces(); ++i) {
    pass.before[i] = pass.sizes;
    pass.sizes[0] += unitsOfPieces[i][0];
    pass.sizes[1] += unitsOfPieces[i][1];
  }
  return pass;
}

void RangePiece::RequirePlan(const RangePlan& plan) const {
  if (signature != plan.Signature() || sums.HasPairs() != plan.wantsPairsInOrder ||
      fits.Count() != plan.fits.size()) {
    throw UsageError("the pieces were summed for other fields; set the options that they had");
  }
}

void RangePiece::RequireAllFits(const RangePlan& plan) const {
  if (!fits.AreComplete(plan.fits)) throw InputError(kOtherRecords);
}

std::string RangePiece::Write() const {
  ByteWriter write;
  write(std::string(kFormat));
  write(signature);
  write(static_cast<std::int64_t>(storage));
  write(zeros);
  VisitCounts(counts, write);
  write(static_cast<std::uint64_t>(order.size()));
  for (const std::string& text : order) write(text);
  write(static_cast<std::uint64_t>(groups.size()));
  for (const Category& group : groups) {
    write(group.text);
    write(group.label);
    write(group.number);
  }
  write(static_cast<std::uint64_t>(sums.HasPairs()));
  sums.Write(write);
  write(static_cast<std::uint64_t>(extremes.has_value()));
  if (extremes) extremes->Write(write);
  fits.Write(write);
  return {write.bytes.begin(), write.bytes.end()};
}

RangePiece::RangePiece(std::string_view bytes) {
  ByteReader read({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
  const auto check = [](bool isSound) {
    if (!isSound) {
      throw InputError(
          "these bytes are no sums of a sorted piece; give them as they were made, by "
          "this version");
    }
  };
  constexpr std::size_t kLeastCategory = 3 * sizeof(std::uint64_t);
  std::string format;
  std::int64_t kind = 0;
  read(format);
  check(format == kFormat);
  read(signature);
  read(kind);
  read(zeros);
  VisitCounts(counts, read);
  order.resize(read.NextCount(sizeof(std::uint64_t)));
  for (std::string& text : order) read(text);
  groups.resize(read.NextCount(kLeastCategory));
  for (Category& group : groups) {
    read(group.text);
    read(group.label);
    read(group.number);
  }
  const auto last = static_cast<std::int64_t>(Storage::Timestamp);
  check(kind >= 0 && kind <= last && zeros >= 0);
  storage = static_cast<Storage>(kind);
  const bool hasPairs = read.Next() != 0;
  check(!hasPairs || groups.size() <= PairSums::kMostGroups);
  sums = SortedSums(groups.size(), hasPairs);
  check(sums.Read(read));
  if (read.Next() != 0) {
    extremes.emplace(SmirnovExtremes::Counts{}, SmirnovExtremes::Counts{});
    check(extremes->Read(read));
  }
  check(fits.Read(read) && read.IsAtEnd());
  CountUnits();
}

}  // namespace npar_host
