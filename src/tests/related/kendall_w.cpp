#include "catalogue/cards/kendall_w.h"

#include "kit/statistics/friedman.h"
#include "planning/test_construction.h"
#include "report/elements.h"
#include "tests/related/ranked_records.h"

namespace card = catalogue::kendall_w;

namespace {

constexpr NPARRankedRecords::Profile kProfile{.card = card::kCard,
                                              .conditionKey = "R_KendallsCoefficient_1",
                                              .codes = card::kRankedRecordsCodes};

/// Kendall's coefficient of concordance: how far do the records agree in the order of k fields?
///
/// Formulas, limits, sources: docs/statistics/kendall_w.md.
///
/// All but W stands in tests/related/ranked_records.h.
class NPARKendallsW final : public NPARRankedRecords {
 public:
  /// Takes the settings over.
  explicit NPARKendallsW(QDSettings* settings) : NPARRankedRecords(settings, kProfile) {}

 private:
  void WriteOwnFigures(XMLElement& statistics) const override {
    AddAttributeRow(statistics, "KendallsW", KendallsW(ChiSquare(), Records(), Fields()));
  }
};

}  // namespace

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  NPARKendallsW::ReadEntry(construction, kProfile);
  return construction.Make<NPARKendallsW>();
}
