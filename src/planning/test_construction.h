#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "catalogue/card.h"
#include "foundation/names.h"
#include "kit/contract/test.h"
#include "planning/planner.h"

/// Makes the test of an entry. Each unit of src/tests defines it for its card; a card of the
/// catalogue's list without a unit does not link.
template <const catalogue::Card& card>
std::unique_ptr<NPARTest> ConstructTest(TestConstruction& construction);

/// The shape that all construct functions share: fresh settings with what every test reads, the
/// checks of the entry, and a test that is made in any case, born failed where a check failed.
///
/// A problem is one message: its status and the parameters of all that was found unfit, in order.
/// A function reads as its own checks:
///
///   const std::int32_t variable = construction.LookUpVariable("variableName", kNoName, kUnknown);
///   construction.RequireContinuous(variable, kNotContinuous);
///   construction.Put("variableIndex", variable);
///   if (construction.IsOK()) construction.Planner().RegisterSortedVariable(variable);
///   return construction.Make<NPARExample>();
class TestConstruction {
 public:
  /// Puts "sigLevel", "confidenceLevel" and, where the run has them, "extendedFigures" and
  /// "weightVariableIndex" into the fresh settings. Planner and entry must outlive the
  /// construction.
  TestConstruction(NPARPlanner& planner, const QDSettings& entry);

  [[nodiscard]] bool IsOK() const noexcept { return status.IsOK(); }
  [[nodiscard]] QDStatus GetStatus() const noexcept { return status; }
  [[nodiscard]] NPARPlanner& Planner() noexcept { return planner; }

  // Problems.

  /// Sets the status unless one stands already.
  void Fail(std::int32_t code);
  /// As Fail, with the parameter of the message.
  void Fail(std::int32_t code, std::string parameter);
  /// Sets the status also over one that stands; parameters add up.
  void FailOver(std::int32_t code);
  void FailOver(std::int32_t code, std::string parameter);

  // Variables. An index is -1 where there is none; checks let such an index pass, since its problem
  // stands already.

  /// The variable whose name stands in the entry under the key. Fails over with `absentCode`
  /// without a name, with `unknownCode` and the name for one that no variable bears.
  std::int32_t LookUpVariable(const std::string& key, std::int32_t absentCode,
                              std::int32_t unknownCode);
  /// The variables of the list "variableName", in order, each given to `check` when it is found.
  /// The first unknown name ends the walk.
  std::vector<std::int32_t> LookUpList(
      std::int32_t absentCode, std::int32_t unknownCode,
      const std::function<void(std::int32_t)>& check = [](std::int32_t) {});
  /// Fails over, with the index as the parameter, for a variable of another kind; true if it fits.
  bool RequireContinuous(std::int32_t index, std::int32_t code);
  bool RequireCategorical(std::int32_t index, std::int32_t code);

  /// What a test of one field between groups names.
  struct TestAndGroup {
    std::int32_t variable;
    std::int32_t group;
  };
  struct TestAndGroupCodes {
    std::int32_t noVariable;
    std::int32_t noGroup;
    std::int32_t unknown;
    std::int32_t notContinuous;
    std::int32_t notCategorical;
    bool tellsUnfit = true;  ///< the index of an unfit variable is a parameter
  };
  /// "variableName", continuous, and "groupVariableName", categorical: found and checked.
  TestAndGroup LookUpTestAndGroup(const TestAndGroupCodes& codes);
  /// Puts "variableIndex" and "groupVariableIndex", as far as found.
  void PutTestAndGroup(const TestAndGroup& variables);

  /// The kind of a variable by its index; None for an index that is none.
  [[nodiscard]] VariableKind KindOf(std::int32_t index) const;
  [[nodiscard]] static bool IsCategorical(VariableKind kind) noexcept {
    return kind == VariableKind::NumericCategory || kind == VariableKind::StringCategory;
  }
  /// The categories of a variable; null for one that has none.
  [[nodiscard]] const QDCategoryList* CategoriesOf(std::int32_t index) const;

  // The entry.

  [[nodiscard]] const QDSettings& Entry() const noexcept { return entry; }
  /// False, and `out` unchanged, where the key is absent or its value of another type.
  template <typename Value>
  bool Read(std::string_view key, Value& out) const {
    return entry.GetSettingValByName(key, out);
  }
  [[nodiscard]] std::string ReadText(std::string_view key, std::string absent = {}) const;
  [[nodiscard]] bool ReadFlag(std::string_view key) const;

  // The test's settings.

  [[nodiscard]] QDSettings& Settings() noexcept { return *settings; }
  /// Numbers and flags are put as doubles, texts and lists as they are.
  template <typename Value>
  void Put(std::string_view key, const Value& value) {
    if constexpr (std::is_arithmetic_v<Value>) {
      settings->AddNewSetting(std::string(key), static_cast<double>(value), std::string());
    } else {
      settings->AddNewSetting(std::string(key), value, std::string());
    }
  }
  /// Puts the entry's value as it stands; false, and nothing put, where the key is absent.
  bool Copy(std::string_view key);

  /// The test is to take the records ascending by that variable, not in their own order.
  void SortBy(std::int32_t variable) noexcept { sortVariable = variable; }
  [[nodiscard]] std::optional<std::int32_t> SortVariable() const noexcept { return sortVariable; }

  /// Makes the test on the fresh settings and gives it the problem, if there is one. Once.
  template <typename Test, typename... Arguments>
  [[nodiscard]] std::unique_ptr<Test> Make(Arguments&&... arguments) {
    // The storage is allocated before the settings are given away, so that they are never lost.
    std::unique_ptr<Test> test(new Test(settings.release(), std::forward<Arguments>(arguments)...));
    HandOver(*test);
    return test;
  }

 private:
  void HandOver(NPARTest& test) const;
  bool Require(bool fits, std::int32_t index, std::int32_t code, bool tellsUnfit = true);

  NPARPlanner& planner;
  const QDSettings& entry;
  std::unique_ptr<QDSettings> settings;
  QDStatus status;
  std::vector<std::string> parameters;
  std::optional<std::int32_t> sortVariable;
};
