#include "tests/related/kendall_w.h"

#include "catalogue/cards/kendall_w.h"
#include "kit/statistics/friedman.h"
#include "planning/test_construction.h"
#include "report/elements.h"

const NPARRankedRecords::Profile NPARKendallsW::kProfile{
    .name = "RKendallsCoefficient",
    .conditionKey = "R_KendallsCoefficient_1",
    .fieldCodes = {.noVariableName = 221911,
                   .unknownVariable = 221903,
                   .wrongCount = 221909,
                   .notContinuous = 221904},
    .noComparison = 221901,
    .comparisonCodes = {.tooFewPairwise = 221915,
                        .tooFewStepwise = 221916,
                        .notSignificantPairwise = 221913,
                        .notSignificantStepwise = 221914}};

NPARKendallsW::NPARKendallsW(QDSettings* settings) : NPARRankedRecords(settings, kProfile) {}

void NPARKendallsW::WriteOwnFigures(XMLElement& statistics) const {
  AddAttributeRow(statistics, "KendallsW", KendallsW(ChiSquare(), Records(), Fields()));
}

template <>
std::unique_ptr<NPARTest> ConstructTest<catalogue::kendall_w::kCard>(
    TestConstruction& construction) {
  NPARKendallsW::ReadEntry(construction, NPARKendallsW::kProfile);
  return construction.Make<NPARKendallsW>();
}
