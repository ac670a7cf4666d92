#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "foundation/names.h"
#include "kit/test.h"
#include "planning/planner.h"

/// The shape that all construct functions share: fresh settings with what every test reads, the
/// first problem that stands, and a test that is made in any case, born failed where there was a
/// problem.
class TestConstruction {
 public:
  /// Puts "sigLevel" (or, for interval estimates, "confidenceLevel") and, with a weight variable,
  /// "weightVariableIndex" into the fresh settings.
  enum class Level { Significance, Confidence };
  TestConstruction(NPARPlanner& planner, const QDSettings& entry,
                   Level level = Level::Significance);

  [[nodiscard]] bool IsOK() const noexcept { return status.IsOK(); }
  [[nodiscard]] QDStatus GetStatus() const noexcept { return status; }
  [[nodiscard]] const QDSettings& Entry() const noexcept { return entry; }
  [[nodiscard]] QDSettings& Settings() noexcept { return *settings; }
  [[nodiscard]] NPARPlanner& Planner() noexcept { return planner; }

  /// Sets the status unless one stands already.
  void Fail(std::int32_t code);
  /// As Fail, with the parameter of the message.
  void Fail(std::int32_t code, const std::string& parameter);
  /// Sets the status also over one that stands; the parameters add up.
  void FailOver(std::int32_t code, const std::string& parameter);

  /// The kind of a variable by its index; None for an index that is none.
  [[nodiscard]] VariableKind KindOf(std::int32_t index) const;
  [[nodiscard]] static bool IsCategorical(VariableKind kind) noexcept {
    return kind == VariableKind::NumericCategory || kind == VariableKind::StringCategory;
  }

  /// Makes the test on the fresh settings and gives it the problem, if there is one.
  template <typename Test, typename... Arguments>
  [[nodiscard]] std::unique_ptr<Test> Make(Arguments&&... arguments) {
    auto test = std::make_unique<Test>(settings.release(), std::forward<Arguments>(arguments)...);
    HandOver(*test);
    return test;
  }

 private:
  void HandOver(NPARTest& test) const;

  NPARPlanner& planner;
  const QDSettings& entry;
  std::unique_ptr<QDSettings> settings;
  QDStatus status;
  std::vector<std::string> parameters;
};
