#include "host/loader/analysis_run.h"

#include <utility>

namespace npar_host {

AnalysisRun::AnalysisRun(const ComponentLibrary& library, std::string parameters, ModelledData data)
    : data(std::move(data)),
      host(std::move(parameters), WriteModel(this->data.model)),
      component(library, host.Context()) {}

void AnalysisRun::Prepare() {
  std::string requirements;
  preparation = component.Configure();
  if (preparation == 0) preparation = component.GetExecutionRequirements(requirements);
  if (preparation != 0) return;
  prepared = npar_host::Prepare(ParseRequirements(requirements), std::move(data));
  host.OfferRecords(prepared.modelText, prepared.records);
}

RunResult AnalysisRun::Execute() {
  RunResult result;
  result.code = preparation;
  if (result.Succeeded()) {
    result.code = component.BeginExecution(host.Progress());
    if (result.Succeeded()) result.document = host.TakeStream();
    static_cast<void>(component.EndExecution());  // frees memory only
  }
  result.messages = host.Messages();
  return result;
}

}  // namespace npar_host
