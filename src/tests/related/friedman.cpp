#include "catalogue/cards/friedman.h"

#include "planning/test_construction.h"
#include "tests/related/ranked_records.h"

namespace card = catalogue::friedman;

namespace {

constexpr NPARRankedRecords::Profile kProfile{.card = card::kCard,
                                              .conditionKey = "R_FriedmansTwoWayByRanks_1",
                                              .codes = card::kRankedRecordsCodes};

/// Friedman's two-way analysis of variance by ranks: do k related fields have the same
/// distribution?
///
/// Formulas, limits, sources: docs/statistics/friedman.md.
///
/// Everything stands in tests/related/ranked_records.h.
class NPARFriedman final : public NPARRankedRecords {
 public:
  /// Takes the settings over.
  explicit NPARFriedman(QDSettings* settings) : NPARRankedRecords(settings, kProfile) {}
};

}  // namespace

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  NPARFriedman::ReadEntry(construction, kProfile);
  return construction.Make<NPARFriedman>();
}
