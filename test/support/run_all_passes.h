#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "planning/shortcut.h"
#include "support/algorithm_element.h"

/// Records as tests write them down.
using Rows = std::vector<std::vector<double>>;

/// Runs one entry of the planner's settings over the rows, from the construct function to the
/// document, and reads the test's element there. `entryName` is one of the test table.
[[nodiscard]] AlgorithmElement RunEntry(const QDVarList& variables, const Rows& rows,
                                        const std::string& entryName, const QDSettings& entry);
/// The same, of a run that asks for extended figures.
[[nodiscard]] AlgorithmElement RunExtended(const QDVarList& variables, const Rows& rows,
                                           const std::string& entryName, const QDSettings& entry);
/// The document of RunEntry.
[[nodiscard]] std::string RunEntryDocument(const QDVarList& variables, const Rows& rows,
                                           const std::string& entryName, const QDSettings& entry);
/// The document of a run of the planner's settings, entries of tests among them.
[[nodiscard]] std::string RunDocument(const QDVarList& variables, const Rows& rows,
                                      const QDSettings& settings,
                                      Shortcut counting = Shortcut::WhereItPays,
                                      Shortcut selecting = Shortcut::WhereItPays);
