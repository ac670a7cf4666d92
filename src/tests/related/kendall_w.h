#pragma once

#include "tests/related/ranked_records.h"

/// Kendall's coefficient of concordance: how far do the records agree in the order of k fields?
///
///   W = X / (N (k - 1)),  X and its significance as in tests/related/ranked_records.h;
/// 1 for full agreement, 0 for none.
///
/// Source: M. G. Kendall and B. Babington Smith, Ann. Math. Stat. 10 (1939), 275-287.
class NPARKendallsW final : public NPARRankedRecords {
 public:
  /// Takes the settings over.
  explicit NPARKendallsW(QDSettings* settings);

 private:
  void WriteOwnFigures(XMLElement& statistics) const override;
};
