#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/data/csv.h"

namespace CLI {
class App;
}

namespace npar_host {

/// How a data file is read, as a person says it.
struct ReadingOptions {
  std::string separator;  // empty: detected
  std::string decimal;
  std::string thousands;
  std::vector<std::string> missingTokens;
  std::vector<std::string> onlyMissingTokens;
  std::size_t skip = 0;
  std::string comment;
  std::string encoding;
};

/// Adds --separator and all others of reading.
void AddReadingOptions(CLI::App& command, ReadingOptions& options);

/// Throws UsageError for what cannot be.
[[nodiscard]] CsvOptions CsvOptionsOf(const ReadingOptions& options);

}  // namespace npar_host
