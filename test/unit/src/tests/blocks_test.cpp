#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <random>

#include "support/group_run.h"

// A test that takes many records at a time passes over most of them as a whole. What it says must
// be what it says of the same records each with a weight of 1 of its own, which leaves it no such
// road.

namespace {

struct Kind {
  const char* entry;
  TestSettings settings;
};

const TestSettings kTwoGroups = ListedEntry<std::string>({"a"}, {"b"});

const Kind kKinds[] = {
    {"IKruskalWallis", ComparedEntry("stepWise")},
    {"IMedian", ComparedEntry()},
    {"IMedian", ComparedEntry().Put("userSpecifyMedian", "true", "median", 0.25)},
    {"IJonckheereTerpstra", ComparedEntry("pairWise")},
    {"IMannWhitneyU", kTwoGroups},
    {"IWaldWolfowitzRuns", kTwoGroups},
    {"IMoses", kTwoGroups},
    {"IKolmogorovSmirnov", kTwoGroups},
    {"OKolmogorovSmirnovNormal", Entry("variableName", "x", "isUseSample", "true")},
    {"OKolmogorovSmirnovUniform", Entry("variableName", "x", "min", -1.0, "max", 1.5)},
    {"OKolmogorovSmirnovExponential", Entry("variableName", "x", "isUseSample", "true")},
};

/// Of "x" between four groups; each record of weight 1.
std::string ResultOf(const Kind& kind, const Rows& rows, bool isWeighted) {
  VariableListBuilder variables;
  variables.Continuous("x").Nominal("g", {"a", "b", "c", "d"});
  if (isWeighted) {
    variables.Weight("n");
  } else {
    variables.Continuous("n");
  }
  return RunEntry(variables.Build(), rows, kind.entry, kind.settings).Xml();
}

struct Shape {
  const char* catches;
  std::function<double(std::mt19937&)> value;
  std::function<double(std::mt19937&)> group;
};

double Normal(std::mt19937& random) { return std::normal_distribution<double>()(random); }

double Grid(std::mt19937& random) { return std::round(Normal(random) * 5.0) / 4.0; }

/// The last bits differ, so that neighbours are equal within the tolerance of a box plot or not.
double Close(std::mt19937& random) {
  return std::round(Normal(random) * 3.0) +
         static_cast<double>(random() % 8) * 60.0 * QDPower::gMachineEpsilon;
}

double SignedZero(std::mt19937& random) {
  const double x = Grid(random);
  return std::fabs(x) > 0.5 ? x : std::copysign(0.0, Normal(random));
}

double Outer(std::mt19937& random) {
  return random() % 50 == 0 ? std::numeric_limits<double>::infinity() : Normal(random);
}

double Even(std::mt19937& random) { return static_cast<double>(random() % 2); }

double Uneven(std::mt19937& random) { return random() % 4 == 0 ? 1.0 : 0.0; }

/// A large group, three small ones of which the last has its own place, and records of no category.
double Skewed(std::mt19937& random) {
  const auto draw = random() % 200;
  return draw < 6 ? static_cast<double>(draw) : 0.0;
}

const Shape kShapes[] = {
    {"continuous, two groups", Normal, Even},
    {"continuous, small groups and none", Normal, Skewed},
    {"continuous, a large and a small group", Normal, Uneven},
    {"ties", Grid, Even},
    {"ties, small groups and none", Grid, Skewed},
    {"close values", Close, Even},
    {"zeros of both signs", SignedZero, Even},
    {"nothing but zeros", [](std::mt19937& random) { return std::copysign(0.0, Normal(random)); },
     Even},
    {"infinities", Outer, Skewed},
};

TEST(Blocks, SayWhatTheirRecordsSay) {
  std::mt19937 random(4711);
  for (const Shape& shape : kShapes) {
    Rows rows;
    for (int i = 0; i < 1500; ++i) rows.push_back({shape.value(random), shape.group(random), 1.0});
    for (const std::size_t count : {1500U, 1497U, 1241U, 749U, 512U, 257U, 40U}) {
      rows.resize(count);
      for (const Kind& kind : kKinds) {
        SCOPED_TRACE(std::string(kind.entry) + ", " + shape.catches + ", " + std::to_string(count));
        const std::string result = ResultOf(kind, rows, false);
        EXPECT_EQ(result, ResultOf(kind, rows, true));
        const bool hasFigures = result.find("StatisticsResult") != std::string::npos;
        EXPECT_TRUE(hasFigures || &shape != kShapes) << "what is compared are figures";
      }
    }
  }
}

TEST(Blocks, WhatIsNoNumberStandsAtTheEnd) {
  std::mt19937 random(7);
  Rows rows;
  for (int i = 0; i < 600; ++i) {
    const bool isNone = i % 200 == 7;
    rows.push_back(
        {isNone ? std::numeric_limits<double>::quiet_NaN() : Normal(random), Even(random), 1.0});
  }
  for (const Kind& kind : kKinds) {
    SCOPED_TRACE(kind.entry);
    EXPECT_EQ(ResultOf(kind, rows, false), ResultOf(kind, rows, true));
  }
}

}  // namespace
