#pragma once

#include "tests/related/ranked_records.h"

/// Friedman's two-way analysis of variance by ranks: do k related fields have the same
/// distribution? Everything stands in tests/related/ranked_records.h.
class NPARFriedman final : public NPARRankedRecords {
 public:
  /// Takes the settings over.
  explicit NPARFriedman(QDSettings* settings);
};
