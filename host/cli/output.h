#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

namespace npar_host {

/// Something could not be written; the text names it and the reason.
class OutputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Publishes a text: "-" is standard output, anything else a file that holds either what it held
/// before or the whole text: it is written to a temporary file in the same folder and renamed. What
/// is no plain file (a device, a pipe) is written as it is. Throws OutputError, for a closed pipe
/// and a full disk too.
void Publish(const std::string& path, std::string_view text);

}  // namespace npar_host
