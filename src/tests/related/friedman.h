#pragma once

#include "tests/related/ranked_records.h"

/// Friedman's two-way analysis of variance by ranks: do k related fields have the same
/// distribution?
///
/// Formulas, limits, sources: docs/statistics/friedman.md.
///
/// Everything stands in tests/related/ranked_records.h.
class NPARFriedman final : public NPARRankedRecords {
 public:
  /// Takes the settings over.
  explicit NPARFriedman(QDSettings* settings);
};
