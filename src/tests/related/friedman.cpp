#include "tests/related/friedman.h"

#include "catalogue/cards/friedman.h"
#include "planning/test_construction.h"

namespace card = catalogue::friedman;

namespace {

constexpr NPARRankedRecords::Profile kProfile{.card = card::kCard,
                                              .conditionKey = "R_FriedmansTwoWayByRanks_1",
                                              .codes = card::kRankedRecordsCodes};

}  // namespace

NPARFriedman::NPARFriedman(QDSettings* settings) : NPARRankedRecords(settings, kProfile) {}

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  NPARFriedman::ReadEntry(construction, kProfile);
  return construction.Make<NPARFriedman>();
}
