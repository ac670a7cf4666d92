#include "planning/progress.h"

// Out of line, so that the component exports them.
NPARReporter::NPARReporter() = default;
NPARReporter::~NPARReporter() = default;

int NPARReporter::DiscreteMeasure(const std::string& /*name*/) const { return 1; }

double NPARReporter::ScaleMeasure(const std::string& /*name*/) const { return QDMV::gMissingValue; }

void NPARReporter::SetCurrentStepNum(std::int32_t step) { currentStep = step; }

std::int32_t NPARReporter::GetCurrentStepNum() const { return currentStep; }
