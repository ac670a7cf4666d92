#include "tests/related/kendall_w.h"

#include "catalogue/cards/kendall_w.h"
#include "kit/statistics/friedman.h"
#include "planning/test_construction.h"
#include "report/elements.h"

namespace card = catalogue::kendall_w;

namespace {

constexpr NPARRankedRecords::Profile kProfile{.card = card::kCard,
                                              .conditionKey = "R_KendallsCoefficient_1",
                                              .codes = card::kRankedRecordsCodes};

}  // namespace

NPARKendallsW::NPARKendallsW(QDSettings* settings) : NPARRankedRecords(settings, kProfile) {}

void NPARKendallsW::WriteOwnFigures(XMLElement& statistics) const {
  AddAttributeRow(statistics, "KendallsW", KendallsW(ChiSquare(), Records(), Fields()));
}

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  NPARKendallsW::ReadEntry(construction, kProfile);
  return construction.Make<NPARKendallsW>();
}
