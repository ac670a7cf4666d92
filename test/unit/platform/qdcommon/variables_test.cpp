#include "foundation/variables.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "foundation/record.h"

namespace QDXML_700 {
namespace {

QDContVar Continuous(StorageKind storage, VariableRole role = VariableRole::Input,
                     const char* name = "x") {
  return QDContVar(name, "", VariableKind::Continuous, storage, role, 0);
}

TEST(Variables, TextsSpellNumbersInTheirStorage) {
  const struct {
    StorageKind storage;
    std::vector<std::pair<const char*, double>> read;
    std::vector<const char*> refused;
  } rows[] = {
      {StorageKind::Real, {{"2.50", 2.5}}, {"1970-01-02", ""}},
      {StorageKind::Integer, {{"-7", -7.0}}, {}},
      {StorageKind::String, {}, {"7"}},
      {StorageKind::Date,
       {{"1970-01-01", 0.0},
        {"1969-12-31", -1.0},
        {"2000-03-01", 11017.0},
        {"2000-02-29", 11016.0},
        {"11017.5", 11017.5}},
       {"1900-02-29", "2000-00-10", "2000-01-1", "2000-01-01x", "2000-01-01T00:00:00"}},
      {StorageKind::Time,
       {{"00:00:00", 0.0}, {"23:59:59", 86399.0}, {"23:59:59.25", 86399.25}},
       {"23:59:59.", "24:00:00", "12:60:00", "12:00:60", "12:00"}},
      {StorageKind::Timestamp,
       {{"1970-01-02T00:00:01", 86401.0},
        {"1970-01-02 00:00:01", 86401.0},
        {"1969-12-31T23:59:59", -1.0},
        {"86401", 86401.0}},
       {"1970-01-02", "1970-01-02X00:00:01"}},
  };
  for (const auto& row : rows) {
    const QDContVar variable = Continuous(row.storage);
    double number = 0.0;
    for (const auto& [text, expected] : row.read) {
      EXPECT_TRUE(variable.TextToNumber(text, number)) << text;
      EXPECT_EQ(number, expected) << text;
    }
    number = -12345.0;
    for (const char* text : row.refused) EXPECT_FALSE(variable.TextToNumber(text, number)) << text;
    EXPECT_EQ(number, -12345.0);
  }
  EXPECT_EQ(Continuous(StorageKind::Date).NumberToText(11017.1), "11017.1");
}

TEST(Variables, ContinuousAndCategoricalMarkMissingValuesDifferently) {
  const QDContVar continuous = Continuous(StorageKind::Real);
  const QDCatVar categorical("g", "Group", VariableKind::StringCategory, StorageKind::String,
                             VariableRole::Input, 3, true, {{"a", 0, "A"}, {"b", 0, ""}});
  EXPECT_TRUE(continuous.IsMissing(QDCommon_700::QDMV::gMissingValue));
  EXPECT_FALSE(continuous.IsMissing(-1.0));
  EXPECT_FALSE(continuous.IsMissing(std::numeric_limits<double>::lowest()));
  EXPECT_TRUE(categorical.IsMissing(-1.0));
  EXPECT_FALSE(categorical.IsMissing(QDCommon_700::QDMV::gMissingValue));
  EXPECT_TRUE(categorical.GetOrdinalFlag());
  EXPECT_TRUE(categorical.IsCategorical());
  EXPECT_EQ(categorical.GetCategoryCount(), 2);
  EXPECT_EQ(continuous.GetCategories(), nullptr);
}

TEST(Variables, CategoriesAreFoundByTextAndNumberAndTheFirstOfEqualOnesCounts) {
  const QDCatVar numeric("g", "", VariableKind::NumericCategory, StorageKind::Real,
                         VariableRole::Input, 0, false,
                         {{"2", 2, "two"}, {"0.5", 0.5, ""}, {"2", 2, "again"}});
  const std::unique_ptr<IQDVariable> copy = numeric.Clone();
  const QDCategoryList& list = *copy->GetCategories();
  EXPECT_EQ(list.FindText("2"), 0);
  EXPECT_EQ(list.FindNumber(2.0), 0);
  EXPECT_EQ(list.FindNumber(0.5), 1);
  EXPECT_EQ(list.FindNumber(std::nan("")), -1);
  EXPECT_EQ(list.FindText("2.0"), -1);
  EXPECT_EQ(list.GetLabel(2), "again");
  EXPECT_EQ(list.GetText(3), "");
  EXPECT_EQ(list.GetText(-1), "");
  EXPECT_TRUE(std::isnan(list.GetNumber(3)));
}

TEST(Variables, AHundredThousandCategoriesAreEachFound) {
  constexpr std::int32_t count = 100000;
  std::vector<QDCategory> categories;
  for (std::int32_t i = 0; i < count; ++i) {
    categories.push_back({"value " + std::to_string(i), i * 0.5, ""});
  }
  const QDCatVar variable("g", "", VariableKind::NumericCategory, StorageKind::Real,
                          VariableRole::Input, 0, false, std::move(categories));
  const QDCategoryList& list = *variable.GetCategories();
  for (std::int32_t i = 0; i < count; ++i) {
    ASSERT_EQ(list.FindText(list.GetText(i)), i);
    ASSERT_EQ(list.FindNumber(list.GetNumber(i)), i);
  }
}

TEST(Variables, AListKnowsItsNamesItsWeightAndItsCounts) {
  QDVarList list;
  const auto add = [&](const char* name, VariableRole role) {
    list.Add(Continuous(StorageKind::Real, role, name).Clone());
  };
  EXPECT_EQ(list.GetFreqWeightVariable(), -1);
  add("a", VariableRole::Input);
  add("w", VariableRole::FrequencyWeight);
  add("a", VariableRole::CaseId);
  QDVarList moved(std::move(list));
  EXPECT_EQ(moved.Size(), 3);
  EXPECT_EQ(moved.FindVariable("a"), 0);
  EXPECT_EQ(moved.FindVariable(""), -1);
  EXPECT_EQ(moved.GetFreqWeightVariable(), 1);
  EXPECT_TRUE(moved.GetVarAt(2)->IsCaseId());
  EXPECT_EQ(moved.GetVarAt(3), nullptr);
  EXPECT_EQ(moved.GetVarAt(-1), nullptr);
}

}  // namespace
}  // namespace QDXML_700
