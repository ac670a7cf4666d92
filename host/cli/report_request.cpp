#include "host/cli/report_request.h"

#include <vector>

#include "host/cli/word_list.h"
#include "host/data/input_error.h"

namespace npar_host {

const Renderer& RequireRenderer(std::string_view name) {
  if (const Renderer* found = FindRenderer(name)) return *found;
  std::vector<std::string> names;
  for (const Renderer& renderer : AllRenderers()) names.emplace_back(renderer.name);
  throw UsageError("there is no report as " + Quoted(name) + "; there is " +
                   JoinWords(names, " and "));
}

ReportRequest ParseReportRequest(std::string_view text) {
  const std::size_t sign = text.find('=');
  ReportRequest request;
  request.renderer = &RequireRenderer(text.substr(0, sign));
  if (sign != std::string_view::npos) {
    request.path = text.substr(sign + 1);
    if (request.path.empty()) throw UsageError("--report " + std::string(text) + " names no file");
  }
  return request;
}

}  // namespace npar_host
