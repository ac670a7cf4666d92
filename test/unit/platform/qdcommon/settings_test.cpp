#include "foundation/settings.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "foundation/setting_values.h"
#include "foundation/xml.h"

namespace QDXML_700 {
namespace {

std::string Text(bool value) { return value ? "true" : "false"; }
std::string Text(std::int32_t value) { return std::to_string(value); }
std::string Text(double value) { return ReplaceSep(value, "%.15g"); }
std::string Text(const std::string& value) { return "'" + value + "'"; }
std::string Text(const QDSettings& value) {
  return std::string("{").append(std::to_string(value.Size())).append("}");
}
template <typename T>
std::string Text(const std::vector<T>& list) {
  std::string text = "[";
  for (const T& item : list) text += Text(item) + " ";
  return text + "]";
}

/// What a reader gives: the value, "-" for refused, "!" for refused with the answer changed.
template <typename T>
std::string ReadAs(const QDSettings& settings, const T& before) {
  T out = before;
  if (settings.GetSettingValByName("key", out)) return Text(out) + " ";
  return Text(out) == Text(before) ? "- " : "! ";
}

/// By bool, int, double, string, nested settings; lists of int, double, string, settings.
std::string ReadKey(const QDSettings& settings) {
  QDSettings other;
  for (const char* name : {"a", "b", "c", "d"}) other.AddNewSetting(name, 1.0, "");
  return ReadAs(settings, true) + ReadAs(settings, std::int32_t{77}) + ReadAs(settings, 7.75) +
         ReadAs(settings, std::string("before")) + ReadAs(settings, other) + "| " +
         ReadAs(settings, std::vector<std::int32_t>{77}) +
         ReadAs(settings, std::vector<double>{7.75}) +
         ReadAs(settings, std::vector<std::string>{"before"}) +
         ReadAs(settings, std::vector<QDSettings>{other});
}

template <typename T>
std::string ReadByAll(const T& value) {
  QDSettings settings;
  settings.AddNewSetting("key", value, "");
  return ReadKey(settings);
}

TEST(Settings, EveryReaderTakesExactlyWhatATextSpells) {
  const struct {
    const char* text;
    const char* read;
  } rows[] = {
      {"true", "true - - 'true' - | - - - - "},
      {"false", "false - - 'false' - | - - - - "},
      {"True", "- - - 'True' - | - - - - "},
      {"1", "- 1 1 '1' - | - - - - "},
      {"-0", "- 0 0 '-0' - | - - - - "},
      {"+12", "- 12 12 '+12' - | - - - - "},
      {"+-1", "- - - '+-1' - | - - - - "},
      {"2147483647", "- 2147483647 2147483647 '2147483647' - | - - - - "},
      {"2147483648", "- - 2147483648 '2147483648' - | - - - - "},
      {"3.0", "- - 3 '3.0' - | - - - - "},
      {".5", "- - 0.5 '.5' - | - - - - "},
      {"1e3", "- - 1000 '1e3' - | - - - - "},
      {"0,5", "- - - '0,5' - | - - - - "},
      {"0x10", "- - - '0x10' - | - - - - "},
      {" 1", "- - - ' 1' - | - - - - "},
      {"1 ", "- - - '1 ' - | - - - - "},
      {"1e999", "- - - '1e999' - | - - - - "},
      {"nan", "- - - 'nan' - | - - - - "},
      {"inf", "- - - 'inf' - | - - - - "},
      {"+", "- - - '+' - | - - - - "},
      {"", "- - - '' - | - - - - "},
  };
  for (const auto& row : rows) EXPECT_EQ(ReadByAll(row.text), row.read) << row.text;
}

TEST(Settings, ANumberIsTruncatedForAnIntAndNeverAText) {
  EXPECT_EQ(ReadByAll(2.9), "true 2 2.9 - - | - - - - ");
  EXPECT_EQ(ReadByAll(-2.9), "true -2 -2.9 - - | - - - - ");
  EXPECT_EQ(ReadByAll(0.0), "false 0 0 - - | - - - - ");
  EXPECT_EQ(ReadByAll(1e300), "true 2147483647 1e+300 - - | - - - - ");
  EXPECT_EQ(ReadByAll(std::numeric_limits<double>::quiet_NaN()), "false 0 nan - - | - - - - ");
}

TEST(Settings, AListIsReadAsEveryListThatAllItsItemsSpell) {
  using Texts = std::vector<std::string>;
  EXPECT_EQ(ReadByAll(Texts{"1", "2"}), "- - - - - | [1 2 ] [1 2 ] ['1' '2' ] - ");
  EXPECT_EQ(ReadByAll(Texts{"1", "2.5"}), "- - - - - | - [1 2.5 ] ['1' '2.5' ] - ");
  EXPECT_EQ(ReadByAll(Texts{"1", "b"}), "- - - - - | - - ['1' 'b' ] - ");
  EXPECT_EQ(ReadByAll(Texts{"true"}), "- - - 'true' - | - - ['true' ] - ");
  EXPECT_EQ(ReadByAll(Texts{"5"}), "- - - '5' - | [5 ] [5 ] ['5' ] - ");
  EXPECT_EQ(ReadByAll(Texts{}), "- - - - - | [] [] [] [] ");
  EXPECT_EQ(ReadByAll(std::vector<std::int32_t>{3}), "- - - - - | [3 ] [3 ] - - ");
  EXPECT_EQ(ReadByAll(std::vector<double>{-1.5, 2}), "- - - - - | [-1 2 ] [-1.5 2 ] - - ");
  EXPECT_EQ(ReadByAll(std::vector<QDSettings>(2)), "- - - - - | - - - [{0} {0} ] ");
}

TEST(Settings, AnAbsentNameIsRefusedAndTheFirstOfEqualNamesCounts) {
  QDSettings settings;
  settings.AddNewSetting("Key", "1", "");
  EXPECT_EQ(ReadKey(settings), "- - - - - | - - - - ");
  settings.AddNewSetting("key", "word", "");
  settings.AddNewSetting("key", 5.0, "");
  EXPECT_EQ(ReadKey(settings), "- - - 'word' - | - - - - ");
}

TEST(Settings, ReplacingKeepsThePlaceAndRemovingTakesOneOrAll) {
  QDSettings settings;
  for (const char* name : {"a", "b", "a"}) settings.AddNewSetting(name, "old", "");
  settings.AddSetting("a", 1.0, true);
  settings.AddSetting("c", "new", true);
  settings.AddSetting("b", "second", false);
  std::vector<std::string> names{"left over"};
  settings.GetSettingNames(names);
  EXPECT_EQ(names, (std::vector<std::string>{"a", "b", "a", "c", "b"}));
  double number = 0.0;
  EXPECT_TRUE(settings.GetSettingValByName("a", number));

  EXPECT_TRUE(settings.RemoveSetting("b", false));
  EXPECT_TRUE(settings.RemoveSetting("a", true));
  EXPECT_FALSE(settings.RemoveSetting("a", true));
  settings.GetSettingNames(names);
  EXPECT_EQ(names, (std::vector<std::string>{"c", "b"}));
}

TEST(Settings, CopiesAreDeepAndAnEntryIsCopiedAsItStandsUnderANewName) {
  QDSettings source;
  source.AddNewSetting("list", std::vector<std::string>{"1", "2"}, "its type");
  QDSettings target;
  target.AddNewSetting(*source.GetSettingAt(0));
  target.AddNewSetting(*target.GetSettingAt(0), "renamed");
  QDSettings copy(target);
  target = QDSettings();
  EXPECT_EQ(copy.GetSettingAt(0)->GetName(), "list");
  EXPECT_EQ(copy.GetSettingAt(1)->GetName(), "renamed");
  EXPECT_EQ(copy.GetSettingAt(1)->GetType(), "its type");
  std::vector<std::int32_t> list;
  EXPECT_TRUE(copy.GetSettingValByName("renamed", list));
  EXPECT_EQ(list, (std::vector<std::int32_t>{1, 2}));
}

TEST(Settings, AreOrderedBySizeThenNamesAndScalarTexts) {
  const auto make = [](const char* name, const char* value) {
    QDSettings settings;
    settings.AddNewSetting(name, value, "");
    return settings;
  };
  QDSettings two = make("a", "1");
  two.AddNewSetting("b", 2.0, "");
  EXPECT_LT(make("z", "z"), two);
  EXPECT_LT(make("a", "2"), make("b", "1"));
  EXPECT_LT(make("a", "1"), make("a", "2"));
  EXPECT_FALSE(make("a", "1") < make("a", "1"));
}

}  // namespace
}  // namespace QDXML_700
