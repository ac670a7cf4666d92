#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <limits>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "foundation/math.h"

namespace {

using QDMath_700::PowerStatus;
using QDMath_700::QDDistFun;
using QDMath_700::QDPower;
using Arguments = std::vector<double>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kTolerance = 1e-12;  // what foundation/math.h promises

double Bin(double x, double n, double p) {
  std::int32_t error = -1;
  const double value = QDDistFun::CdfBin(x, n, p, error);
  EXPECT_EQ(error, std::isnan(value) ? 1 : 0);
  return value;
}

double Hyper(double x, double n, double k, double total) {
  std::int32_t error = -1;
  const double value = QDDistFun::CDFHyper(x, n, k, total, error);
  EXPECT_EQ(error, std::isnan(value) ? 1 : 0);
  return value;
}

struct Function {
  std::size_t arity;
  std::function<double(const Arguments&)> call;
};

const std::map<std::string, Function> kFunctions = {
    {"CdfStdNorm", {1, [](const Arguments& a) { return QDDistFun::CdfStdNorm(a[0]); }}},
    {"SfStdNorm", {1, [](const Arguments& a) { return QDDistFun::SfStdNorm(a[0]); }}},
    {"CdfNorm", {3, [](const Arguments& a) { return QDDistFun::CdfNorm(a[0], a[1], a[2]); }}},
    {"IdfStdNorm", {1, [](const Arguments& a) { return QDDistFun::IdfStdNorm(a[0]); }}},
    {"CdfChi", {2, [](const Arguments& a) { return QDDistFun::CdfChi(a[0], a[1]); }}},
    {"SfChi", {2, [](const Arguments& a) { return QDDistFun::SfChi(a[0], a[1]); }}},
    {"IdfChi", {2, [](const Arguments& a) { return QDDistFun::IdfChi(a[0], a[1]); }}},
    {"SfF", {3, [](const Arguments& a) { return QDDistFun::SfF(a[0], a[1], a[2]); }}},
    {"IdfF", {3, [](const Arguments& a) { return QDDistFun::IdfF(a[0], a[1], a[2]); }}},
    {"IdfBeta", {3, [](const Arguments& a) { return QDDistFun::IdfBeta(a[0], a[1], a[2]); }}},
    {"CdfBin", {3, [](const Arguments& a) { return Bin(a[0], a[1], a[2]); }}},
    {"CDFHyper", {4, [](const Arguments& a) { return Hyper(a[0], a[1], a[2], a[3]); }}},
    {"lyradnlgam", {1, [](const Arguments& a) { return QDDistFun::lyradnlgam(a[0]); }}},
};

struct Reference {
  std::string row;
  std::string function;
  Arguments arguments;
  long double value;
};

// The rows of a file that are of one function.
std::vector<Reference> References(const std::string& function,
                                  const char* path = "distributions.csv") {
  std::ifstream file(std::string(NPAR_SOURCE_DIR) + "/test/support/references/" + path);
  std::vector<Reference> references;
  for (std::string line; std::getline(file, line);) {
    if (!line.starts_with(function + ",")) continue;
    std::istringstream cells(line.substr(function.size() + 1));
    Reference reference{line, function, {}, 0};
    std::string cell;
    for (std::size_t i = 0; i < kFunctions.at(function).arity; ++i) {
      std::getline(cells, cell, ',');
      reference.arguments.push_back(std::strtod(cell.c_str(), nullptr));
    }
    std::getline(cells, cell);
    reference.value = std::strtold(cell.c_str(), nullptr);
    references.push_back(reference);
  }
  return references;
}

class DistributionReferences : public testing::TestWithParam<std::string> {};

TEST_P(DistributionReferences, AreMetToTwelveDigits) {
  const std::vector<Reference> references = References(GetParam());
  ASSERT_GE(references.size(), 6U);
  for (const Reference& reference : references) {
    const double value = kFunctions.at(GetParam()).call(reference.arguments);
    const auto distance =
        static_cast<double>(std::fabs(value - reference.value) / std::fabs(reference.value));
    std::array<char, 160> figures;
    std::snprintf(figures.data(), figures.size(), "computed %.17g, reference %.17Lg, distance %.3g",
                  value, reference.value, distance);
    EXPECT_TRUE(distance <= kTolerance) << reference.row << "\n" << figures.data();
  }
}

std::vector<std::string> FunctionNames() {
  std::vector<std::string> names;
  for (const auto& [name, function] : kFunctions) names.push_back(name);
  return names;
}

INSTANTIATE_TEST_SUITE_P(Distributions, DistributionReferences, testing::ValuesIn(FunctionNames()),
                         [](const auto& info) { return info.param; });

// The digest is that of x86-64, whose inner figures the processor forms.
TEST(DistributionsTest, HaveTheSameBitsOnEveryMachine) {
  std::uint64_t digest = 1;
  for (const std::string& name : FunctionNames()) {
    for (const Reference& reference : References(name)) {
      const double value = kFunctions.at(name).call(reference.arguments);
      digest = (std::rotl(digest, 5) ^ std::bit_cast<std::uint64_t>(value)) * 0x9E3779B97F4A7C15U;
    }
  }
  EXPECT_EQ(digest, 12537182812252944189U);
}

TEST(DistributionsTest, NotANumberInAnyPlaceGivesNotANumber) {
  for (const auto& [name, function] : kFunctions) {
    for (std::size_t place = 0; place < function.arity; ++place) {
      Arguments arguments(function.arity, 0.5);
      arguments[place] = kNaN;
      EXPECT_TRUE(std::isnan(function.call(arguments))) << name << " argument " << place;
    }
  }
}

TEST(DistributionsTest, EdgesOfTheDomainHaveExactAnswers) {
  std::size_t count = 0;
  for (const auto& [name, function] : kFunctions) {
    for (const Reference& edge : References(name, "distribution_edges.csv")) {
      ++count;
      const double value = function.call(edge.arguments);
      EXPECT_TRUE(std::isnan(edge.value) ? std::isnan(value) : value == edge.value)
          << edge.row << " is " << value;
    }
  }
  EXPECT_EQ(count, 66U);
}

struct PowerCase {
  double x, value;
  PowerStatus status;
};

TEST(PowerTest, ExponentTellsUnderflowAndOverflow) {
  const PowerCase kCases[] = {
      {0.0, 1.0, PowerStatus::Success},
      {709.0, 8.2184074615549724e307, PowerStatus::Success},
      {709.78, 1.7928227943945155e308, PowerStatus::Success},
      {709.79, kInfinity, PowerStatus::Overflow},
      {kInfinity, kInfinity, PowerStatus::Overflow},
      {kNaN, kInfinity, PowerStatus::Overflow},
      {-745.13, 4.9406564584124654e-324, PowerStatus::Success},
      {-745.14, 0.0, PowerStatus::Underflow},
      {-kInfinity, 0.0, PowerStatus::Underflow},
  };
  for (const PowerCase& row : kCases) {
    double value = -1.0;
    EXPECT_EQ(QDPower::Exponent(row.x, value), row.status) << row.x;
    EXPECT_DOUBLE_EQ(value, row.value) << row.x;
  }
}

TEST(PowerTest, AlmostEqualIncludesTheToleranceAndRefusesNotANumber) {
  EXPECT_TRUE(QDPower::AlmostEqual(1.0, 1.5, 0.5));
  EXPECT_FALSE(QDPower::AlmostEqual(1.0, 1.5, 0.49999));
  EXPECT_TRUE(QDPower::AlmostEqual(-2.0, -2.0, 0.0));
  EXPECT_FALSE(QDPower::AlmostEqual(kNaN, kNaN, 1.0));
  EXPECT_FALSE(QDPower::AlmostEqual(1.0, 1.0, kNaN));
}

TEST(PowerTest, EvenIntegersAreWholeMultiplesOfTwo) {
  for (const double x : {0.0, -0.0, 2.0, -4.0, 0x1p60}) EXPECT_TRUE(QDPower::IsEvenInteger(x)) << x;
  for (const double x : {1.0, -3.0, 2.5, 0x1p52 + 1, kNaN, kInfinity}) {
    EXPECT_FALSE(QDPower::IsEvenInteger(x)) << x;
  }
}

}  // namespace
