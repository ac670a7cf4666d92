#pragma once

#include "tests/related/ranked_records.h"

/// Kendall's coefficient of concordance: how far do the records agree in the order of k fields?
///
/// Formulas, limits, sources: docs/statistics/kendall_w.md.
///
/// All but W stands in tests/related/ranked_records.h.
class NPARKendallsW final : public NPARRankedRecords {
 public:
  /// Takes the settings over.
  explicit NPARKendallsW(QDSettings* settings);

 private:
  void WriteOwnFigures(XMLElement& statistics) const override;
};
