#include "planning/test_worker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <new>
#include <numeric>

#include "kit/contract/shared_tallies.h"
#include "kit/contract/test.h"
#include "planning/progress.h"
#include "support/variables.h"

namespace {

using testing::ElementsAre;

constexpr double kMissing = QDMV::gMissingValue;
constexpr std::int32_t kExhausted = 220012;

using Log = std::vector<std::string>;
using Rows = std::vector<std::vector<double>>;

/// Writes down each call.
class NotingTally final : public Tally {
 public:
  struct Key {
    Log* log;
    std::string name;
    bool operator==(const Key&) const = default;
  };
  explicit NotingTally(Key key) : key(std::move(key)) {}
  [[nodiscard]] const Key& GetKey() const { return key; }
  void Take(RecordBatch& batch) override {
    key.log->push_back(key.name + " Takes " + std::to_string(batch.Size()));
  }
  void EndPass() override { key.log->push_back(key.name + " End"); }

 private:
  Key key;
};

/// A test that writes down each call and does as it is told: 0, or the code that it fails with.
class ScriptedTest final : public NPARTest {
 public:
  ScriptedTest(std::string name, Log& log, int passes = 1)
      : NPARTest(nullptr), name(std::move(name)), log(log), passesWanted(passes) {}

  XMLElement* WriteResults() override {
    Do("Write");
    return XMLElement::Create(name);
  }

  std::vector<std::int32_t> required = {0};
  std::string tallyName;  // empty: it reads none
  /// What a call does.
  std::map<std::string, std::function<std::int32_t()>> answers;

 protected:
  void Prepare(const SettingsReader& /*settings*/) override {
    ExpectPasses(passesWanted);
    Require(required);
    if (!tallyName.empty()) static_cast<void>(Share<NotingTally>({&log, tallyName}));
    Do("Begin");
  }
  void StartPass() override { Do("Begin"); }
  void Take(RecordBatch& batch) override {
    for (std::size_t i = 0; i < batch.Size() && !HasFailed(); ++i) {
      Do("Record " + std::to_string(static_cast<int>(batch.Of(0)[i])));
    }
  }
  void TakeAgain(RecordBatch& batch) override { Take(batch); }
  void Compute() override { Do("End"); }
  void Finish() override { Do("End"); }

 private:
  void Do(const std::string& call) {
    log.push_back(name + " " + call);
    const auto answer = answers.find(call);
    const std::int32_t code = answer == answers.end() ? 0 : answer->second();
    if (code != 0) Fail(code);
  }

  std::string name;
  Log& log;
  int passesWanted;
};

QDVarList OneVariable() { return VariableListBuilder().Continuous("x").Build(); }

Rows Count(int count) {
  Rows rows;
  for (int i = 0; i < count; ++i) rows.push_back({static_cast<double>(i)});
  return rows;
}

/// A worker over records in memory, with the calls of its tests.
struct Bench {
  explicit Bench(const Rows& rows, QDVarList list = OneVariable(), bool analysisMissing = true)
      : variables(std::move(list)), records(rows), worker(&variables, analysisMissing) {
    worker.SetRecords(&batches);
  }
  ScriptedTest& Add(const std::string& name, int passes = 1) {
    auto test = std::make_unique<ScriptedTest>(name, log, passes);
    ScriptedTest& added = *test;
    worker.AddTest(std::move(test));
    return added;
  }
  QDStatus Run() { return worker.RunWorker(cancelPair); }
  /// The calls that start so.
  [[nodiscard]] Log Calls(const std::string& start) const {
    Log calls;
    for (const std::string& call : log) {
      if (call.starts_with(start)) calls.push_back(call);
    }
    return calls;
  }

  QDVarList variables;
  MemoryBlocks records;
  IteratorBatches batches{records};
  Log log;
  CancelPair cancelPair;
  NPARTestWorker worker;
};

std::function<std::int32_t()> Code(std::int32_t code) {
  return [code] { return code; };
}

std::int32_t RunOutOfMemory() { throw std::bad_alloc(); }

TEST(TestWorker, CallsTestsInTheOrderOfTheContract) {
  Bench bench(Count(2));
  bench.Add("a", 2);
  bench.Add("b", 1);
  EXPECT_EQ(bench.Run(), QDStatus());
  EXPECT_THAT(bench.log, ElementsAre("a Begin", "b Begin",                                    //
                                     "a Record 0", "a Record 1", "b Record 0", "b Record 1",  //
                                     "a End", "b End",                                        //
                                     "a Begin", "a Record 0", "a Record 1",                   //
                                     "a End"));
  EXPECT_EQ(bench.records.Resets(), 2);
}

TEST(TestWorker, EndsThePassAtOnceWithoutRecords) {
  Bench bench({});
  bench.Add("a");
  EXPECT_EQ(bench.Run(), QDStatus());
  EXPECT_THAT(bench.log, ElementsAre("a Begin", "a End"));
}

TEST(TestWorker, WithoutTestsReadsNothing) {
  Bench bench(Count(2));
  EXPECT_EQ(bench.Run(), QDStatus());
  EXPECT_EQ(bench.records.Resets(), 0);
}

struct MissingCase {
  const char* catches;
  std::vector<std::int32_t> required;
  Log analysis;  // calls with the analysis treatment
};

// Of five variables the first is the record's number. Records 1 to 4 miss one variable each; record
// 5 holds the marks of other kinds, which are values there.
TEST(TestWorker, MissingValuesHoldOffTheTestsThatRequireThem) {
  const auto variables = [] {
    return VariableListBuilder()
        .Continuous("number")
        .Continuous("c")
        .NominalNumbers("n", {1})
        .Nominal("s", {"a"})
        .Other("o")
        .Build();
  };
  const Rows rows = {{0, 1, 0, 0, 1},  {1, kMissing, 0, 0, 1}, {2, 1, -1, 0, 1},
                     {3, 1, 0, -1, 1}, {4, 1, 0, 0, kMissing}, {5, -1, kMissing, kMissing, -1}};
  const MissingCase cases[] = {
      {"continuous", {1}, {"Record 0", "Record 2", "Record 3", "Record 4", "Record 5"}},
      {"numeric category", {2}, {"Record 0", "Record 1", "Record 3", "Record 4", "Record 5"}},
      {"string category", {3}, {"Record 0", "Record 1", "Record 2", "Record 4", "Record 5"}},
      {"kind other", {4}, {"Record 0", "Record 1", "Record 2", "Record 3", "Record 5"}},
      {"several, unsorted and doubled",
       {4, 1, 4},
       {"Record 0", "Record 2", "Record 3", "Record 5"}},
      {"nothing required takes complete records only", {}, {"Record 0", "Record 5"}},
      {"no variable is no requirement that can fail",
       {-1, 99},
       {"Record 0", "Record 1", "Record 2", "Record 3", "Record 4", "Record 5"}},
  };
  for (const MissingCase& row : cases) {
    SCOPED_TRACE(row.catches);
    Bench analysis(rows, variables());
    analysis.Add("t").required = row.required;
    EXPECT_EQ(analysis.Run(), QDStatus());
    Log expected;
    for (const std::string& call : row.analysis) expected.push_back("t " + call);
    EXPECT_EQ(analysis.Calls("t Record"), expected);

    Bench listwise(rows, variables(), false);
    listwise.Add("t").required = row.required;
    EXPECT_EQ(listwise.Run(), QDStatus());
    EXPECT_THAT(listwise.Calls("t Record"), ElementsAre("t Record 0", "t Record 5"));
  }
}

TEST(TestWorker, TestsOfOnePassAreHeldOffEachByItsOwnVariables) {
  VariableListBuilder builder;
  for (int i = 0; i < 130; ++i) builder.Continuous(std::to_string(i));
  Rows rows(131, std::vector<double>(130, 1.0));
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (i > 0) rows[i][i - 1] = kMissing;  // record i misses variable i - 1
  }
  Bench bench(rows, builder.Build());
  std::map<std::string, std::vector<std::int32_t>> required = {
      {"low", {3}}, {"high", {129}}, {"edge", {63, 64}}};
  for (const auto& [name, positions] : required) bench.Add(name).required = positions;
  bench.Add("all").required = {};
  EXPECT_EQ(bench.Run(), QDStatus());
  EXPECT_EQ(bench.Calls("low Record").size(), 130U);
  EXPECT_EQ(bench.Calls("high Record").size(), 130U);
  EXPECT_EQ(bench.Calls("edge Record").size(), 129U);
  EXPECT_EQ(bench.Calls("all Record").size(), 1U);
}

TEST(TestWorker, TalliesTakeTheRecordsOfTheirTestsOnceAndBeforeThem) {
  Bench bench({{0, kMissing}, {1, 1}},
              VariableListBuilder().Continuous("x").Continuous("y").Build());
  const auto add = [&bench](const char* name, std::int32_t required, const char* tally,
                            int passes) -> ScriptedTest& {
    ScriptedTest& test = bench.Add(name, passes);
    test.required = {required};
    test.tallyName = tally;
    return test;
  };
  add("a", 0, "X", 1);
  add("b", 1, "Y", 2);
  add("c", 0, "X", 1).answers["Record 1"] = Code(220007);
  add("d", 1, "Z", 1).answers["Record 1"] = Code(220007);
  EXPECT_EQ(bench.Run(), QDStatus());
  std::erase_if(bench.log, [](const std::string& call) {
    return call.find("Record") > 2 && call.find("End") > 2 && call.find("Takes") > 2;
  });
  EXPECT_THAT(bench.log,
              ElementsAre("X Takes 2", "a Record 0", "a Record 1", "c Record 0", "c Record 1",  //
                          "Y Takes 1", "Z Takes 1", "b Record 1", "d Record 1",                 //
                          "X End", "Y End", "a End", "b End",  // Z has no test any more
                          "Y Takes 1", "b Record 1", "Y End", "b End"));
}

TEST(TestBase, ATestThatRunsAloneDrivesItsTally) {
  Log log;
  ScriptedTest test("a", log);
  test.tallyName = "X";
  EXPECT_EQ(test.BeginPass(), QDStatus());
  EXPECT_EQ(test.ProcessRecord(Record(1)), QDStatus());
  EXPECT_EQ(test.EndPass(), QDStatus());
  EXPECT_THAT(log, ElementsAre("a Begin", "X Takes 1", "a Record 0", "X End", "a End"));
}

TEST(TestWorker, AnErrorTakesItsTestOutOfThePassAndNoOther) {
  Bench bench(Count(3));
  ScriptedTest& failed = bench.Add("a");
  failed.answers["Begin"] = Code(220918);
  ScriptedTest& failing = bench.Add("b");
  failing.answers["Record 1"] = Code(220007);
  bench.Add("c");
  EXPECT_EQ(bench.Run(), QDStatus());
  EXPECT_THAT(bench.Calls("a"), ElementsAre("a Begin"));
  EXPECT_THAT(bench.Calls("b"), ElementsAre("b Begin", "b Record 0", "b Record 1"));
  EXPECT_THAT(bench.Calls("c Record"), ElementsAre("c Record 0", "c Record 1", "c Record 2"));
  EXPECT_THAT(bench.Calls("c End"), ElementsAre("c End"));
}

TEST(TestWorker, ExhaustedMemoryEndsTheRunAtOnce) {
  for (const char* call : {"Begin", "Record 1", "End"}) {
    for (const bool isThrown : {true, false}) {
      SCOPED_TRACE(std::string(call) + (isThrown ? " throws" : " returns"));
      Bench bench(Count(3));
      bench.Add("a").answers[call] = isThrown ? RunOutOfMemory : Code(kExhausted);
      bench.Add("b");
      EXPECT_EQ(bench.Run(), QDStatus(kExhausted));
      EXPECT_EQ(bench.log.back(), std::string("a ") + call);
    }
  }
}

TEST(TestWorker, CollectsElementsInTheOrderOfTheTestsAndGivesThemAwayOnce) {
  Bench bench(Count(1));
  bench.Add("first");
  bench.Add("second");
  ASSERT_EQ(bench.worker.CollectResults(), QDStatus());
  const auto results = bench.worker.TakeResults();
  ASSERT_EQ(results.size(), 2U);
  EXPECT_EQ(results[0]->GetName(), "first");
  EXPECT_EQ(results[1]->GetName(), "second");
  EXPECT_TRUE(bench.worker.TakeResults().empty());
}

TEST(TestWorker, ExhaustedMemoryWhileResultsAreWrittenIsAStatus) {
  Bench bench(Count(1));
  bench.Add("a");
  bench.Add("b").answers["Write"] = RunOutOfMemory;
  EXPECT_EQ(bench.worker.CollectResults(), QDStatus(kExhausted));
}

TEST(TestWorker, TakesRecordsAscendingByItsSortVariable) {
  Bench bench({}, VariableListBuilder().Continuous("number").Continuous("x").Build());
  MemoryRecords source({{0, 5}, {1, 3}, {2, 5}, {3, kMissing}, {4, 4}});
  IteratorBatches batches(source);
  InitialDataReader reader(&batches, false, {0, 1}, &bench.variables);
  ASSERT_EQ(reader.Read(), QDStatus());
  NPARSortManager manager(&reader);
  ASSERT_TRUE(manager.AddSortVariable(1));
  bench.worker.SetSortVariable(1, &manager);
  bench.Add("a", 2).required = {1};
  EXPECT_EQ(bench.Run(), QDStatus());
  const Log pass = {"a Record 1", "a Record 4", "a Record 0", "a Record 2"};
  Log both = pass;
  both.insert(both.end(), pass.begin(), pass.end());
  EXPECT_EQ(bench.Calls("a Record"), both);
}

/// Says yes from the n-th question on.
class CancelAfter final : public ICancelSource {
 public:
  explicit CancelAfter(int questions) : left(questions) {}
  bool IsCancelled() override { return left-- <= 0; }

 private:
  int left;
};

TEST(TestWorker, ACancelledPassIsNotEndedAndIsNoError) {
  // One question stands before the pass; then one for each batch.
  for (const int questions : {0, 1, 2, 3}) {
    SCOPED_TRACE(questions);
    Bench bench(Count(700));
    CancelAfter source(questions);  // answered with no
    bench.cancelPair.source = &source;
    bench.Add("a");
    EXPECT_EQ(bench.Run(), QDStatus());
    EXPECT_TRUE(bench.cancelPair.cancelled);
    EXPECT_EQ(bench.Calls("a Record").size(),
              256U * static_cast<unsigned>(std::max(questions - 1, 0)));
    EXPECT_TRUE(bench.Calls("a End").empty());
  }
}

class PercentListener final : public ProgressListener, public IPassListener {
 public:
  int Report(ProgressReport& report) override {
    percents.push_back(dynamic_cast<NPARReporter&>(report).GetCurrentStepNum());
    return 0;
  }
  void PassBegins(const PassInHand& pass) override {
    EXPECT_EQ(pass.orderField, "");
    passes.push_back(pass.testNames.size());
  }
  std::vector<int> percents;
  std::vector<std::size_t> passes;  // the number of tests in each
};

TEST(TestWorker, ProgressRisesInStepsOfWholePasses) {
  struct Case {
    const char* catches;
    std::vector<int> passes;  // of each test
    double start, span;
    std::vector<int> percents;
    std::vector<std::size_t> inHand;  // tests of each pass that was told
  };
  const Case cases[] = {
      {"the start of the range, then one step for each pass",
       {4},
       0.25,
       0.5,
       {25, 37, 50, 62, 75},
       {1, 1, 1, 1}},
      {"the longest test counts", {1, 2}, 0.0, 1.0, {0, 50, 100}, {2, 1}},
      {"tests that expect no pass jump to the end", {0}, 0.25, 0.65, {90}, {1}},
      {"no test, no report", {}, 0.25, 0.65, {}, {}},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.catches);
    Bench bench(Count(1));
    PercentListener listener;
    bench.worker.SetProgressRange(&listener, row.start, row.span);
    for (const int passes : row.passes) bench.Add("t", passes);
    EXPECT_EQ(bench.Run(), QDStatus());
    EXPECT_EQ(listener.percents, row.percents);
    EXPECT_EQ(listener.passes, row.inHand);
  }
}

}  // namespace
