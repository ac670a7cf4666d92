#pragma once

namespace CLI {
class App;
}

namespace npar_host {

/// Each adds one command to the program. Commands throw what is wrong with usage, input or output;
/// those that run the component leave its outcome in `exitCode`.
void AddRunCommand(CLI::App& program, int& exitCode);
void AddAnalyseCommand(CLI::App& program, int& exitCode);
void AddDescribeCommand(CLI::App& program);
void AddReportCommand(CLI::App& program);
void AddExplainCommand(CLI::App& program);
void AddTestsCommand(CLI::App& program);
void AddInfoCommand(CLI::App& program);
void AddCompletionCommand(CLI::App& program);

}  // namespace npar_host
