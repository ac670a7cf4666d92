#pragma once

#include "tests/related/ranked_records.h"

/// Friedman's two-way analysis of variance by ranks: do k related fields have the same
/// distribution? Everything stands in tests/related/ranked_records.h.
class NPARFriedman final : public NPARRankedRecords {
 public:
  /// Takes the settings over.
  explicit NPARFriedman(QDSettings* settings);

 private:
  static const Profile kProfile;
  friend std::unique_ptr<NPARTest> ConstructFriedmanTest(TestConstruction& construction);
};

/// Makes the test of an entry "RFriedmansTwoWayByRanks". Errors 221801, 221803, 221804, 221809,
/// 221811.
std::unique_ptr<NPARTest> ConstructFriedmanTest(TestConstruction& construction);
