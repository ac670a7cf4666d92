#pragma once

#include <cstdint>

namespace QDCommon_700 {

/// Outcome of an operation: a numeric code, 0 for success; any other code is an error unless the
/// warning flag is set. The text of a code lies with the host.
class [[nodiscard]] QDStatus {
 public:
  constexpr QDStatus() noexcept = default;
  constexpr explicit QDStatus(std::int32_t code, bool isWarning = false) noexcept
      : code(code), warning(isWarning) {}

  [[nodiscard]] constexpr bool IsOK() const noexcept { return code == 0; }
  [[nodiscard]] constexpr bool IsError() const noexcept { return code != 0 && !warning; }
  [[nodiscard]] constexpr bool IsWarning() const noexcept { return code != 0 && warning; }
  [[nodiscard]] constexpr std::int32_t GetErrorCode() const noexcept { return code; }

  friend constexpr bool operator==(const QDStatus&, const QDStatus&) noexcept = default;

 private:
  std::int32_t code = 0;
  bool warning = false;
};

}  // namespace QDCommon_700
