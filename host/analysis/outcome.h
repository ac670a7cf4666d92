#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "host/loader/run_host.h"

namespace npar_host {

/// Calls that came out of order; the text says what is missing.
class StateError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Somebody asked the run to stop.
class CancelledError : public std::runtime_error {
 public:
  CancelledError() : std::runtime_error("the run was cancelled") {}
};

/// The component refused the run; its messages say why.
class RefusedError : public std::runtime_error {
 public:
  explicit RefusedError(std::vector<RunMessage> messages)
      : std::runtime_error("the component refused the run"), messages(std::move(messages)) {}

  [[nodiscard]] const std::vector<RunMessage>& Messages() const noexcept { return messages; }

 private:
  std::vector<RunMessage> messages;
};

}  // namespace npar_host
