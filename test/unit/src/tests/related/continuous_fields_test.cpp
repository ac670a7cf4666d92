#include "tests/related/continuous_fields.h"

#include "support/entry_run.h"

namespace {

TEST(ContinuousFieldsTest, EachTestHasItsOwnCodes) {
  const auto variables =
      VariableListBuilder().Continuous("x").Continuous("y").Nominal("g", {"a"}).Weight("n").Build();
  const struct {
    const char* entry;
    std::int32_t noList, unknown, count, unfit;
  } tests[] = {{"RWilcoxonSignedRanks", 221010, 221003, 221009, 221004},
               {"RHodgesLehmannEstimatePairs", 222410, 222403, 222409, 222404},
               {"RFriedmansTwoWayByRanks", 221811, 221803, 221809, 221804},
               {"RKendallsCoefficient", 221911, 221903, 221909, 221904}};
  const TestSettings none = Entry("typeOfMultipleComparison", "none");
  const auto of = [&none](const Texts& names) {
    return TestSettings(none).Put("variableName", names);
  };
  for (const auto& test : tests) {
    SCOPED_TRACE(test.entry);
    ExpectMessages(test.entry, variables, {{1, 2, 0, 1}, {3, 1, 0, 1}, {4, 4.5, 0, 1}},
                   {{"no list", none, Error(test.noList)},
                    {"unknown name", of({"x", "nobody"}), Error(test.unknown, {"nobody"})},
                    {"one name", of({"x"}), Error(test.count)},
                    {"count comes before kind", of({"g"}), Error(test.count)},
                    {"the first unfit field alone", of({"g", "g"}), Error(test.unfit, {"2"})},
                    {"all well", of({"y", "x"}), {}}});
    ExpectMessages(test.entry, variables, {{1, 2, 0, 0.9}},
                   {{"no weight", of({"x", "y"}), Error(220003)}});
  }
}

TEST(ContinuousFieldsTest, APairIsNotThree) {
  const auto variables = VariableListBuilder().Continuous("x").Continuous("y").Build();
  const TestSettings three = Entry("variableName", Texts{"x", "y", "x"});
  for (const auto& [name, code] :
       {std::pair("RWilcoxonSignedRanks", 221009), {"RHodgesLehmannEstimatePairs", 222409}}) {
    ExpectMessages(name, variables, {{1, 2}}, {{"three names", three, Error(code)}});
  }
}

}  // namespace
