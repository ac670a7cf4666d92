#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/render/result_model.h"

namespace npar_host {

/// The time that SOURCE_DATE_EPOCH sets for all that is made, in seconds since 1970: the same input
/// then gives the same bytes. Throws UsageError for what is no such number.
[[nodiscard]] std::optional<std::int64_t> SourceDate();

/// Keeps the words behind the program's name, for MakeTrace.
void RememberCommandLine(const std::vector<std::string>& words);

/// What a report tells of its origin: the data file ("-" is standard input) and this process.
[[nodiscard]] ReportTrace MakeTrace(const std::string& dataPath, const ResultDocument& document,
                                    const std::vector<TracedField>& fields);

}  // namespace npar_host
