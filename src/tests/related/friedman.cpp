#include "tests/related/friedman.h"

#include "catalogue/cards/friedman.h"
#include "planning/test_construction.h"

const NPARRankedRecords::Profile NPARFriedman::kProfile{
    .name = "RFriedmansTwoWayByRanks",
    .conditionKey = "R_FriedmansTwoWayByRanks_1",
    .fieldCodes = {.noVariableName = 221811,
                   .unknownVariable = 221803,
                   .wrongCount = 221809,
                   .notContinuous = 221804},
    .noComparison = 221801,
    .comparisonCodes = {.tooFewPairwise = 221815,
                        .tooFewStepwise = 221816,
                        .notSignificantPairwise = 221813,
                        .notSignificantStepwise = 221814}};

NPARFriedman::NPARFriedman(QDSettings* settings) : NPARRankedRecords(settings, kProfile) {}

template <>
std::unique_ptr<NPARTest> ConstructTest<catalogue::friedman::kCard>(
    TestConstruction& construction) {
  NPARFriedman::ReadEntry(construction, NPARFriedman::kProfile);
  return construction.Make<NPARFriedman>();
}
