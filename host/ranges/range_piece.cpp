#include "host/ranges/range_piece.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <utility>

#include "host/data/input_error.h"
#include "host/data/number.h"
#include "host/requirements/requirements.h"

namespace npar_host {
namespace {

constexpr const char* kFormat = "npar sums of sorted ranges 1";
constexpr std::size_t kRecordsAtOnce = 2048;
constexpr const char* kOrderRemedy = "; sort it ascending, equal values and missing ones anyhow";

using Block = std::array<double, kRecordsAtOnce>;

std::size_t IndexOf(const DataModel& model, const std::string& name) {
  const auto found = std::ranges::find(model.fields, name, &Field::name);
  return static_cast<std::size_t>(found - model.fields.begin());
}

bool IsMissing(double value) { return value == kMissingNumber || std::isnan(value); }

std::int64_t WeightOf(double weight) {
  constexpr double kLargest = 2147483647.0;
  if (weight > kLargest) {
    throw InputError("a record has a weight above 2147483647; make several records of it");
  }
  return static_cast<std::int64_t>(weight);
}

Requirements RequirementsOf(const AnalysisRequest& request) {
  Requirements requirements;
  requirements.weightField = request.weightField;
  requirements.roundWeight = !request.weightField.empty();
  if (request.listwise) requirements.listwiseDelete = request.NamedFields();
  return requirements;
}

/// Kept records of some fields, block by block.
class Records {
 public:
  Records(const RecordView& view, std::vector<std::size_t> fields)
      : view(view), fields(std::move(fields)), blocks(this->fields.size()) {}

  /// How many records there are in the blocks now; 0 at the end.
  std::size_t Next() {
    std::size_t count = 0;
    const std::size_t begin = next;
    for (std::size_t i = 0; i < fields.size(); ++i) {
      next = begin;
      count = view.ReadField(fields[i], next, kRecordsAtOnce, blocks[i].data());
    }
    return count;
  }
  [[nodiscard]] const Block& Of(std::size_t place) const { return blocks[place]; }

 private:
  const RecordView& view;
  std::vector<std::size_t> fields;
  std::vector<Block> blocks;
  std::size_t next = 0;
};

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

}  // namespace

RangePiece::RangePiece(const RangePlan& plan, const AnalysisRequest& request, ModelledData data)
    : signature(plan.Signature()), order(plan.groupOrder) {
  Sum(plan, request, std::move(data));
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

void RangePiece::Sum(const RangePlan& plan, const AnalysisRequest& request, ModelledData data) {
  const PreparedData prepared = Prepare(RequirementsOf(request), std::move(data));
  counts = prepared.counts;
  std::vector<std::size_t> fields;
  std::vector<std::size_t> placeOfCode;
  for (const std::string& name : plan.fields) fields.push_back(IndexOf(prepared.model, name));
  if (!plan.group.empty()) {
    fields.push_back(IndexOf(prepared.model, plan.group));
    placeOfCode = FindGroups(prepared.model.fields[fields.back()]);
  } else {
    groups = {{"negative", 0.0, {}, false}, {"positive", 1.0, {}, false}};
    fields.resize(2, fields.front());
  }
  if (!request.weightField.empty()) fields.push_back(IndexOf(prepared.model, request.weightField));
  sums = SortedSums(groups.size());
  Records records(prepared.records, fields);
  const bool isGrouped = plan.order == RangePlan::Order::Value;
  const bool isDifference = plan.order == RangePlan::Order::Difference;
  while (const std::size_t count = records.Next()) {
    const Block& first = records.Of(0);
    const Block& second = records.Of(1);
    for (std::size_t i = 0; i < count; ++i) {
      const std::int64_t weight = fields.size() == 2 ? 1 : WeightOf(records.Of(2)[i]);
      if (IsMissing(first[i])) continue;
      if (isGrouped) {
        if (second[i] >= 0.0)
          Take(first[i], placeOfCode[static_cast<std::size_t>(second[i])], weight);
        continue;
      }
      if (IsMissing(second[i])) continue;
      const double d = isDifference ? second[i] - first[i] : first[i] - plan.origin;
      if (d == 0.0) zeros += weight;
      if (d != 0.0 && !std::isnan(d)) Take(std::abs(d), d > 0.0 ? kPositive : kNegative, weight);
    }
    if (sums.Count() > RunSums::kMostUnits) {
      throw InputError("a piece has more than 2^40 records; take smaller weights");
    }
  }
}

void RangePiece::Take(double value, std::size_t group, std::int64_t weight) {
  if (!sums.Take(value, group, weight)) {
    throw InputError("the records of a piece do not ascend" + std::string(kOrderRemedy));
  }
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
  piece.sums = sums.Regrouped(PlacesOf(groups, all), all.size());
  return piece;
}

void RangePiece::Append(const RangePiece& next) {
  if (next.signature != signature || next.order != order) {
    throw InputError("the sums of a piece are of another analysis; sum it with the same options");
  }
  if (groups.empty()) storage = next.storage;
  if (!next.groups.empty() && next.storage != storage) {
    throw InputError(
        "the group field holds numbers in one piece and texts in another; give all of "
        "them one type");
  }
  std::vector<Category> all = groups;
  for (const Category& group : next.groups) {
    if (std::ranges::find(all, group.text, &Category::text) == all.end()) all.push_back(group);
  }
  std::ranges::sort(all, [this](const Category& a, const Category& b) { return Precedes(a, b); });
  if (sums.Count() + next.sums.Count() > RunSums::kMostUnits) {
    throw InputError("there are more than 2^40 records; take smaller weights");
  }
  const RangePiece following = next.Among(all);
  RangePiece joined = Among(all);
  if (!joined.sums.Append(following.sums)) {
    throw InputError("a piece begins below the end of the one before" + std::string(kOrderRemedy));
  }
  AddCounts(joined.counts, next.counts);
  joined.zeros += next.zeros;
  joined.pieces += next.pieces;
  *this = std::move(joined);
}

std::string RangePiece::Write() const {
  ByteWriter write;
  write(std::string(kFormat));
  write(signature);
  write(static_cast<std::int64_t>(storage));
  write(zeros);
  write(pieces);
  VisitCounts(counts, write);
  write(static_cast<std::uint64_t>(order.size()));
  for (const std::string& text : order) write(text);
  write(static_cast<std::uint64_t>(groups.size()));
  for (const Category& group : groups) {
    write(group.text);
    write(group.label);
    write(group.number);
  }
  sums.Write(write);
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
  read(pieces);
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
  check(kind >= 0 && kind <= last && zeros >= 0 && pieces >= 1);
  storage = static_cast<Storage>(kind);
  sums = SortedSums(groups.size());
  check(sums.Read(read) && read.IsAtEnd());
}

}  // namespace npar_host
