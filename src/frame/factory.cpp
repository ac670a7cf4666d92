#include "frame/factory.h"

#include <memory>

#include "kit/contract/allocation.h"
#include "planning/planner.h"
#include "planning/warning.h"

NPARFactory::NPARFactory() = default;
NPARFactory::NPARFactory(const NPARFactory& other) = default;
NPARFactory& NPARFactory::operator=(const NPARFactory& other) = default;
NPARFactory::~NPARFactory() = default;

QDCommon_700::IQDAlgorithm* NPARFactory::CreateQDAlgorithm(QDSettings& settings,
                                                           QDVarList& variables) {
  std::unique_ptr<NPARPlanner> planner;
  status = GuardAllocation(kMemoryExhausted, [&] {
    planner = std::make_unique<NPARPlanner>(&settings, &variables);
    return planner->GetStatus();
  });
  return status.IsError() ? nullptr : planner.release();
}

QDStatus NPARFactory::GetStatus() const { return status; }

std::vector<QDStatus> NPARFactory::GetWarnings() const {
  return NPARWarning::Instance().GetStatuses();
}
