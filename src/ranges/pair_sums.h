#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "kit/order/wide_integer.h"
#include "ranges/units.h"

/// Sums over runs of t units of t (t - 1) and of t^2 (t - 1).
struct TiedUnits {
  WideInteger pairs = 0;
  WideInteger triples = 0;

  void Add(std::int64_t t) noexcept {
    const WideInteger ofRun = static_cast<WideInteger>(t) * (t - 1);
    pairs += ofRun;
    triples += ofRun * t;
  }
  TiedUnits& operator+=(const TiedUnits& other) noexcept {
    pairs += other.pairs;
    triples += other.triples;
    return *this;
  }
  friend bool operator==(const TiedUnits&, const TiedUnits&) = default;
};

/// What runs of ties come to for each pair of groups alone, in whole numbers. Their memory grows
/// with the square of the number of groups.
class PairSums {
 public:
  static constexpr std::size_t kMostGroups = 512;

  explicit PairSums(std::size_t groupCount)
      : groups(groupCount), pairs(groupCount == 0 ? 0 : PlaceOf(0, groupCount)) {}

  /// Takes the next run: all its cells.
  void AddRun(std::span<const ValueCell> run);
  /// Takes the runs that follow, none of which ties with these.
  void Append(const PairSums& next);
  [[nodiscard]] PairSums Regrouped(std::span<const std::size_t> places,
                                   std::size_t groupCount) const;

  /// Twice the pairs of units in which the one of the later group is the larger one, equal ones
  /// counting a half.
  [[nodiscard]] WideInteger TwiceOrdered(std::size_t earlier, std::size_t later) const {
    return pairs[PlaceOf(earlier, later)].twiceOrdered;
  }
  /// Of the runs of the two groups' units.
  [[nodiscard]] TiedUnits TiedOf(std::size_t earlier, std::size_t later) const;

  /// Shows every sum to `see`, which may change it.
  template <typename See>
  void Visit(See& see) {
    for (Group& group : groups) {
      see(group.count);
      see(group.tied.pairs);
      see(group.tied.triples);
    }
    for (Pair& pair : pairs) {
      see(pair.twiceOrdered);
      see(pair.products);
      see(pair.cubic);
    }
  }
  /// Can these be sums of n units?
  [[nodiscard]] bool CanBeOf(WideInteger n) const;

 private:
  struct Group {
    std::int64_t count = 0;  // units
    TiedUnits tied;          // with each other
  };
  struct Pair {
    WideInteger twiceOrdered = 0;
    WideInteger products = 0;  // of the units a and b of both in a run, a b
    WideInteger cubic = 0;     // a b (a + b)

    void Add(const Pair& other) noexcept {
      twiceOrdered += other.twiceOrdered;
      products += other.products;
      cubic += other.cubic;
    }
  };
  struct GroupWeight {
    std::uint32_t group;
    std::int64_t weight;
  };

  [[nodiscard]] static constexpr std::size_t PlaceOf(std::size_t earlier,
                                                     std::size_t later) noexcept {
    return later * (later - 1) / 2 + earlier;
  }
  /// Puts the units of each group of a run together; groups ascend.
  void GatherRun(std::span<const ValueCell> run);

  std::vector<Group> groups;
  std::vector<Pair> pairs;
  std::vector<GroupWeight> inRun;
};
