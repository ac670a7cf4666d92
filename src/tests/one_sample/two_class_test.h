#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kit/contract/test.h"
#include "kit/groups/two_classes.h"
#include "report/algorithm_element.h"

/// Condition keys of a test on two classes, by how the classes were formed.
struct TwoClassKeys {
  std::string_view givenList;
  std::string_view cutPoint;
  std::string_view fromData;
};

/// A test on the sums of weights in the two classes of one field. One pass.
class TwoClassTest : public NPARTest {
 public:
  using NPARTest::NPARTest;
  [[nodiscard]] bool TakesCells() const override { return classes.IsOrderFree(); }

 protected:
  /// Errors 221306, 221309, 221310: the field has no two classes.
  void Prepare(const SettingsReader& settings) override;
  void Take(RecordBatch& batch) override { classes.Count(batch, weight); }

  /// Key and field, classes or cut point, then the further parameters.
  [[nodiscard]] Condition ClassCondition(const TwoClassKeys& keys,
                                         const std::vector<std::string>& further) const;

  /// The sizes of the classes and the share of the first.
  void AddClasses(ExtendedFigures& figures) const;
  /// Wilson's interval and Agresti's and Coull's for that share.
  void AddShareIntervals(ExtendedFigures& figures) const;

  TwoClasses classes;
};
