#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "host/render/text_sink.h"

namespace npar_host {

/// Something could not be written; the text names it and the reason.
class OutputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Publishes a text: "-" is standard output, anything else a file that holds either what it held
/// before or the whole text: it is written to a temporary file in the same folder and renamed. What
/// is no plain file (a device, a pipe, /dev/stdout) is written through. A signal that ends the
/// process leaves no temporary file. Throws OutputError, for a closed pipe and a full disk too. One
/// at a time in a process.
void Publish(const std::string& path, std::string_view text);
/// The same of a text that comes in pieces.
using TextWriter = std::function<void(const TextSink& sink)>;
void Publish(const std::string& path, const TextWriter& write);

/// Makes a folder and those above it, where they are missing. Throws OutputError.
void MakeFolder(const std::string& folder);

/// Writes a line to standard error: with control characters made visible, and cut where a name of
/// the data has made it too long to read.
void Tell(std::string_view text);

/// The files of a call of the program, "-" being a standard stream.
struct CallFiles {
  std::vector<std::string> read;
  std::vector<std::string> written;
};

/// Throws OutputError where a file is written twice, or read too: the second text would take the
/// place of the first. What is written through (devices, "-") may stand often.
void CheckOutputs(const CallFiles& files);

}  // namespace npar_host
