#include "planning/planner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <new>
#include <sstream>

#include "kit/contract/test.h"
#include "planning/progress.h"
#include "report/result_writer.h"
#include "support/variables.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Log = std::vector<std::string>;
using Rows = std::vector<std::vector<double>>;

/// A test that writes down what it is given.
class PlainTest final : public NPARTest {
 public:
  PlainTest(std::string name, Log& log) : NPARTest(nullptr), name(std::move(name)), log(log) {}
  XMLElement* WriteResults() override {
    XMLElement* element = XMLElement::Create("Algorithm");
    element->AddAttribute("name", name);
    if (sharedData != nullptr) element->AddAttribute("mean", sharedData->GetMean(1));
    return element;
  }

  std::function<void()> onRecord;

 protected:
  void Prepare(const SettingsReader& /*settings*/) override { Require({0}); }
  void Take(RecordBatch& batch) override {
    for (std::size_t i = 0; i < batch.Size(); ++i) {
      log.push_back(name + " " + std::to_string(static_cast<int>(batch.Of(0)[i])));
      if (onRecord) onRecord();
    }
  }
  void Compute() override {}

 private:
  std::string name;
  Log& log;
};

/// The value of an entry that does something when the planner comes to it.
class Planted final : public IQDSettingValue {
 public:
  explicit Planted(std::function<void()> action) : action(std::move(action)) {}
  SettingKind GetKind() const override {
    action();
    return SettingKind::Settings;
  }
  std::unique_ptr<IQDSettingValue> Clone() const override {
    return std::make_unique<Planted>(action);
  }
  bool Get(bool&) const override { return false; }
  bool Get(std::int32_t&) const override { return false; }
  bool Get(double&) const override { return false; }
  bool Get(std::string&) const override { return false; }
  bool Get(std::vector<std::int32_t>&) const override { return false; }
  bool Get(std::vector<double>&) const override { return false; }
  bool Get(std::vector<std::string>&) const override { return false; }
  bool Get(std::vector<QDSettings>&) const override { return false; }
  const QDSettings* GetListValue() const override { return &nested; }

 private:
  std::function<void()> action;
  QDSettings nested;
};

class Planner : public testing::Test {
 protected:
  /// Does that while the tests are built.
  void Plant(std::function<void()> action) {
    settings.AddNewSetting(QDSetting("planted", std::make_unique<Planted>(std::move(action))));
  }
  std::unique_ptr<PlainTest> Make(const std::string& name) {
    auto test = std::make_unique<PlainTest>(name, log);
    return test;
  }
  QDStatus Execute() { return planner.Execute(records, 0); }
  /// The names of the tests in the document.
  Log Written() {
    std::ostringstream document;
    EXPECT_EQ(planner.WriteOutput(document, NPARRunInfo()), QDStatus());
    Log names;
    const std::string text = document.str();
    const std::string mark = "<Algorithm name=\"";
    for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at)) {
      at += mark.size();
      names.push_back(text.substr(at, text.find('"', at) - at));
    }
    return names;
  }

  QDSettings settings;
  QDVarList variables =
      VariableListBuilder().Continuous("number").Continuous("x").Other("o").Build();
  NPARPlanner planner{&settings, &variables};
  MemoryRecords records{{{0, 5, 1}, {1, 3, 1}, {2, QDMV::gMissingValue, 1}, {3, 4, 1}}};
  Log log;
};

TEST_F(Planner, NeedsAnEntryAndTakesOneOfAnUnknownName) {
  settings.AddNewSetting("sigLevel", 0.01, "");
  settings.AddNewSetting("list", std::vector<double>{1}, "");
  EXPECT_EQ(Execute(), QDStatus(220001));
  EXPECT_FALSE(planner.IsExecuted());
  settings.AddNewSetting("NoSuchTest", QDSettings(), "");
  EXPECT_EQ(Execute(), QDStatus());
  EXPECT_TRUE(planner.IsExecuted());
  EXPECT_THAT(Written(), IsEmpty());
}

TEST_F(Planner, WritesTheResultsOfARunOnce) {
  EXPECT_EQ(planner.GetDescription(), "Nonparemetic Tests Component Ver. 1.0Copyright (c) Lyra");
  Plant([this] { planner.AddTest(Make("a")); });
  std::ostringstream document;
  EXPECT_EQ(planner.WriteOutput(document, NPARRunInfo()), QDStatus(6));
  ASSERT_EQ(Execute(), QDStatus());
  EXPECT_THAT(Written(), ElementsAre("a"));
  EXPECT_EQ(planner.WriteOutput(document, NPARRunInfo()), QDStatus(6));
  EXPECT_EQ(document.str(), "");
  ASSERT_EQ(Execute(), QDStatus());
  EXPECT_THAT(Written(), ElementsAre("a"));
}

TEST_F(Planner, FailsWithTheCodeOfItsRecords) {
  Plant([] {});
  MemoryRecords none({});
  EXPECT_EQ(planner.Execute(none, 0), QDStatus(220003));
  variables = VariableListBuilder().Weight("w").Build();
  MemoryRecords heavy(Rows{{2147483648.0}});
  EXPECT_EQ(planner.Execute(heavy, 0), QDStatus(220026));
  EXPECT_EQ(planner.GetStatus(), QDStatus(220026));
}

TEST_F(Planner, AVariableThatNoTestTakesFailsTheRunAfterAllTestsAreBuilt) {
  bool wentOn = false;
  Plant([this] { static_cast<void>(planner.GetVariableLevel("o")); });
  Plant([&wentOn] { wentOn = true; });
  EXPECT_EQ(Execute(), QDStatus(220004));
  EXPECT_TRUE(wentOn);
}

TEST_F(Planner, TestsOfOneOrderShareAWorkerAndStandBehindThoseOfTheRecordsOrder) {
  Plant([this] {
    planner.AddSortedTest(Make("x1"), 1, QDStatus());
    planner.AddSortedTest(Make("number"), 0, QDStatus());
    planner.AddTest(Make("main"));
    planner.AddSortedTest(Make("failed"), 1, QDStatus(220701));
    planner.AddSortedTest(Make("nowhere"), -1, QDStatus(220703));
    planner.AddSortedTest(Make("x2"), 1, QDStatus());
  });
  ASSERT_EQ(Execute(), QDStatus());
  // The missing value of x is the smallest; a failed construction is given the records' order.
  EXPECT_THAT(log, ElementsAre("main 0", "main 1", "main 2", "main 3",                          //
                               "x1 2", "x1 1", "x1 3", "x1 0", "x2 2", "x2 1", "x2 3", "x2 0",  //
                               "number 0", "number 1", "number 2", "number 3",                  //
                               "failed 0", "failed 1", "failed 2", "failed 3",                  //
                               "nowhere 0", "nowhere 1", "nowhere 2", "nowhere 3"));
  EXPECT_THAT(Written(), ElementsAre("main", "x1", "x2", "number", "failed", "nowhere"));
}

TEST_F(Planner, TheMainWorkerReadsTheHostsRecordsAndWhatWasKeptOfASourceThatEnds) {
  Plant([this] { planner.AddTest(Make("a")); });
  ASSERT_EQ(Execute(), QDStatus());
  EXPECT_EQ(records.Resets(), 2);
  const Log first = log;
  log.clear();
  OnePassRecords once({{0, 5, 1}, {1, 3, 1}, {2, QDMV::gMissingValue, 1}, {3, 4, 1}});
  ASSERT_EQ(planner.Execute(once, 0), QDStatus());
  EXPECT_EQ(log, first);
}

TEST_F(Planner, ListwiseTreatmentDropsIncompleteRecordsForAllTests) {
  for (const char* treatment : {"listwise", "anything else", "analysis"}) {
    SCOPED_TRACE(treatment);
    log.clear();
    settings = QDSettings();
    settings.AddNewSetting("missingTreatment", treatment, "");
    Plant([this] {
      planner.AddTest(Make("main"));
      planner.AddSortedTest(Make("sorted"), 1, QDStatus());
    });
    ASSERT_EQ(Execute(), QDStatus());
    EXPECT_EQ(log.size(), treatment == std::string("analysis") ? 8U : 6U);
  }
}

TEST_F(Planner, SharesSummariesOfWhatTestsAskFor) {
  Plant([this] {
    planner.RegisterSortedVariable(1);
    planner.AddTest(Make("a"));
  });
  ASSERT_EQ(Execute(), QDStatus());
  std::ostringstream document;
  ASSERT_EQ(planner.WriteOutput(document, NPARRunInfo()), QDStatus());
  EXPECT_THAT(document.str(), testing::HasSubstr("name=\"a\" mean=\"4\""));
}

TEST_F(Planner, ACancelledRunIsAFailedRun) {
  Plant([this] {
    auto test = Make("a");
    test->onRecord = [this] { planner.Cancel(); };
    planner.AddTest(std::move(test));
    planner.AddSortedTest(Make("never"), 1, QDStatus());
  });
  EXPECT_EQ(Execute(), QDStatus(1));
  EXPECT_FALSE(planner.IsExecuted());
  EXPECT_THAT(log, testing::Each(testing::StartsWith("a ")));
  std::ostringstream document;
  EXPECT_EQ(planner.WriteOutput(document, NPARRunInfo()), QDStatus(6));
}

TEST_F(Planner, ACancelIsHeededAtEachOfItsQuestions) {
  struct Source final : ICancelSource {
    bool IsCancelled() override { return ++asked > refused; }
    int refused = 0;
    int asked = 0;
  };
  NPARPlanner* current = nullptr;
  Plant([&] {
    current->AddTest(Make("a"));
    current->AddSortedTest(Make("b"), 1, QDStatus());
  });
  Source source;
  do {
    NPARPlanner run(&settings, &variables);
    current = &run;
    run.SetCancelSource(&source);
    source.asked = 0;
    const QDStatus status = run.Execute(records, 0);
    EXPECT_EQ(status, QDStatus(source.asked > source.refused ? 1 : 0)) << source.refused;
  } while (source.asked > source.refused++);
  EXPECT_GT(source.refused, 2 * 4) << "each batch, and the beginning and end of each worker";
}

TEST_F(Planner, ALackOfMemoryFailsTheRunWithTheCodeOfItsStage) {
  Plant([this] {
    auto test = Make("a");
    test->onRecord = [] { throw std::bad_alloc(); };
    planner.AddTest(std::move(test));
    planner.AddSortedTest(Make("never"), 1, QDStatus());
  });
  EXPECT_EQ(Execute(), QDStatus(220012));
  EXPECT_THAT(log, ElementsAre("a 0"));
  settings = QDSettings();
  Plant([] { throw std::bad_alloc(); });
  EXPECT_EQ(Execute(), QDStatus(220002));
}

TEST_F(Planner, TestsFillTheirPartOfTheProgressByTheirNumber) {
  class Listener final : public ProgressListener {
   public:
    int Report(ProgressReport& report) override {
      percents.push_back(dynamic_cast<NPARReporter&>(report).GetCurrentStepNum());
      return 0;
    }
    std::vector<int> percents;
  } listener;
  planner.SetProgressListener(&listener);
  planner.SetProgressListener(nullptr);  // leaves the listener as it is
  Plant([this] {
    for (const char* name : {"a", "b", "c"}) planner.AddTest(Make(name));
    planner.AddSortedTest(Make("d"), 1, QDStatus());
  });
  ASSERT_EQ(Execute(), QDStatus());
  // Three tests of four: from 25 to 25 + 65 * 3 / 4 percent; then the last.
  EXPECT_THAT(listener.percents, ElementsAre(25, 73, 90));
}

TEST_F(Planner, ReadsTheLevelsOfItsSettings) {
  settings.AddNewSetting("sigLevel", "0.01", "");
  settings.AddNewSetting("confidenceLevel", 0.9, "");
  settings.AddNewSetting("caseIDVariableName", "x", "");
  Plant([] {});
  EXPECT_EQ(planner.GetSigLevel(), 0.05);
  EXPECT_EQ(planner.GetConfidenceLevel(), 0.95);
  EXPECT_EQ(planner.GetCaseIdIndex(), -1);
  ASSERT_EQ(Execute(), QDStatus());
  EXPECT_EQ(planner.GetSigLevel(), 0.01);
  EXPECT_EQ(planner.GetConfidenceLevel(), 0.9);
  EXPECT_EQ(planner.GetCaseIdIndex(), 1);
  EXPECT_FALSE(planner.HasWeight());
}

}  // namespace
