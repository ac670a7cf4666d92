#pragma once

#include <cstdint>
#include <exception>
#include <span>
#include <string>
#include <vector>

#include "host/loader/run_host.h"

namespace npar_host {

/// Why a function of npar/analysis.h failed.
struct Failure {
  std::uint32_t code = 0;
  std::string field;    ///< empty without one
  std::string message;  ///< what is wrong
  std::string remedy;   ///< what to do; empty where nothing is known
  std::vector<RunMessage> messages;
};

/// What an exception means to a caller.
[[nodiscard]] Failure FailureOf(const std::exception_ptr& exception);

/// As npar_analysis_error tells it.
[[nodiscard]] std::string FailureJson(const Failure& failure);
/// [{"code": 220010, "kind": "error", ...}, ...]
[[nodiscard]] std::string MessagesJson(std::span<const RunMessage> messages);

}  // namespace npar_host
