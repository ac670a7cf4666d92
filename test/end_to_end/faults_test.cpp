#include <gmock/gmock.h>

#include <algorithm>
#include <set>
#include <string>

#include "support/all_tests_host.h"
#include "support/loaded_component.h"
#include "support/process.h"
#include "support/schema.h"

// A run of every test, in which the host fails at one moment after the other.
namespace {

constexpr char kProgram[] = NPAR_BUILD_DIR "/bin/npar";

std::uint32_t ConfigureAndRun(LoadedComponent& component) {
  const std::uint32_t configured = component.Configure();
  return configured != HB_OK ? configured : component.Begin();
}

/// What a run without faults publishes.
std::string UndisturbedResult() {
  AllTestsHost host;
  LoadedComponent component(host);
  EXPECT_EQ(ConfigureAndRun(component), HB_OK) << component.Messages();
  return host.Published();
}

/// The same component, on a host that is well again, gives the whole result.
void ExpectServesOn(AllTestsHost& host, LoadedComponent& component, const std::string& expected) {
  host.containers.clear();
  host.lastIdentifier = 0;
  ASSERT_EQ(ConfigureAndRun(component), HB_OK) << component.Messages();
  EXPECT_EQ(host.Published(), expected);
  EXPECT_EQ(component.End(), HB_OK);
  EXPECT_EQ(host.OpenDocuments(), 0);
}

TEST(Faults, AllTestsDocumentIsValidAndHasEveryTest) {
  const std::string result = UndisturbedResult();
  EXPECT_TRUE(IsValid(result, "statxml-7.0.xsd"));
  for (const char* name : {"IHodgesLehmannEstimateGroups",
                           "IJonckheereTerpstra",
                           "IKolmogorovSmirnov",
                           "IKruskalWallis",
                           "IMannWhitneyU",
                           "IMedian",
                           "IMoses",
                           "IWaldWolfowitzRuns",
                           "OBinomial",
                           "OChiSquare",
                           "OEstimateConfidenceInterval",
                           "OKolmogorovSmirnov",
                           "ORuns",
                           "OWilcoxonSignedRanks",
                           "RCochransQ",
                           "RFriedmansTwoWayByRanks",
                           "RHodgesLehmannEstimatePairs",
                           "RKendallsCoefficient",
                           "RMarginalHomogeneity",
                           "RMcNemar",
                           "RSign",
                           "RWilcoxonSignedRanks"}) {
    EXPECT_THAT(result, testing::HasSubstr("<Algorithm name=\"" + std::string(name) + "\""));
  }
}

/// Fails each call that a run makes to its host, in turn.
void FailEveryCall(bool hasBlocks) {
  const std::string expected = UndisturbedResult();
  AllTestsHost calm;
  if (!hasBlocks) calm.iteratorTable.readBlock = nullptr;
  LoadedComponent steady(calm);
  ASSERT_EQ(ConfigureAndRun(steady), HB_OK);
  // A run survives a host that does not say who it is, does not hear of progress, and the like.
  const std::set<std::string> kOptional = {"getInformation", "newIdentifier", "report",
                                           "beginPass",      "release",       "close"};
  const std::set<std::string> entries(calm.calls.begin(), calm.calls.end());
  for (const std::string& entry : entries) {
    const int count = calm.CallCount(entry);
    const int step = std::max(1, count / 100);  // of the values, each hundredth
    for (int number = 1; number <= count; number += step) {
      SCOPED_TRACE(entry + " " + std::to_string(number) + " of " + std::to_string(count));
      AllTestsHost host;
      host.iteratorTable.readBlock = calm.iteratorTable.readBlock;
      LoadedComponent component(host);
      host.FailCall(entry, number);
      const std::uint32_t result = ConfigureAndRun(component);
      if (kOptional.count(entry) != 0) {
        EXPECT_EQ(result, HB_OK);
      } else {
        EXPECT_NE(result, HB_OK);
        EXPECT_EQ(host.Published(), "");
      }
      ExpectServesOn(host, component, expected);
    }
  }
}

TEST(Faults, AnyCallOfTheHostMayFail) { FailEveryCall(true); }
TEST(Faults, AnyCallOfAHostWithoutBlocksMayFail) { FailEveryCall(false); }

TEST(Faults, CancelIsHeededWhereverTheHostIsAsked) {
  const std::string expected = UndisturbedResult();
  for (int moment = 0;; moment += 3) {
    SCOPED_TRACE(moment);
    AllTestsHost host;
    host.iteratorTable.readBlock = nullptr;
    LoadedComponent component(host);
    int seen = 0;
    const auto cancel = [&] {
      std::int32_t err = 0;
      if (seen++ == moment) {
        EXPECT_EQ(LoadedLibrary::Instance().cancelExecution(component.Handle(), &err), HB_OK);
      }
    };
    host.onRecords = cancel;
    host.onProgress = [&](double) { cancel(); };
    ASSERT_EQ(component.Configure(), HB_OK);
    const std::uint32_t result = component.Begin();
    if (seen <= moment) {
      EXPECT_EQ(result, HB_OK) << "nothing was left to cancel";
      EXPECT_GT(moment, 100);
      return;
    }
    // The last report stands at the end of the tests' part: a cancel there comes too late or not.
    if (result == HB_OK) {
      EXPECT_EQ(host.Published(), expected);
    } else {
      EXPECT_EQ(result, NPAR_FAILED);
      // Warnings about fields that a test leaves aside stand before it.
      ASSERT_FALSE(host.messages.empty());
      EXPECT_EQ(host.messages.back(), (RecordingHost::DeliveredMessage{3, 1, {}}));
      EXPECT_EQ(host.Published(), "");
    }
    host.onRecords = nullptr;
    host.onProgress = nullptr;
    ExpectServesOn(host, component, expected);
  }
}

// A host whose records are fewer, or more, than they were in the pass before.
TEST(Faults, RecordsThatChangeBetweenPassesBreakNothing) {
  for (const bool grows : {false, true}) {
    for (int moment = 0; moment < 400; moment += 7) {
      SCOPED_TRACE(moment);
      AllTestsHost host;
      host.iteratorTable.readBlock = nullptr;
      LoadedComponent component(host);
      ASSERT_EQ(component.Configure(), HB_OK);
      int seen = 0;
      host.onRecords = [&] {
        if (seen++ != moment) return;
        if (grows) {
          for (int i = 0; i < 5; ++i)
            host.records.push_back(host.records[static_cast<std::size_t>(i)]);
        } else {
          host.records.resize(5);
        }
      };
      const std::uint32_t result = component.Begin();
      if (result == HB_OK) {
        EXPECT_TRUE(moment % 49 != 0 || IsValid(host.Published(), "statxml-7.0.xsd"));
      } else {
        EXPECT_EQ(host.Published(), "");
      }
      EXPECT_EQ(component.End(), HB_OK);
    }
  }
}

TEST(Faults, FullDiskAndClosedPipeLeaveNoHalfResult) {
  const TemporaryFolder folder;
  const std::string csv = folder.Write("d.csv", "x\n1\n2\n4\n");
  const std::string run = std::string(kProgram) + " analyse " + csv + " --one-sample x";
  const ProcessResult full = RunProcess({"/bin/sh", "-c", run + " > /dev/full"});
  EXPECT_EQ(full.exitCode, 2);
  EXPECT_THAT(full.err, testing::HasSubstr("No space left"));
  const ProcessResult closed =
      RunProcess({"/bin/bash", "-c", run + " --report html | true; exit ${PIPESTATUS[0]}"});
  // Ended by the signal of the pipe, as programs in a pipeline are, or done before it was closed.
  EXPECT_THAT(closed.exitCode, testing::AnyOf(0, 2, 141)) << closed.err;
  EXPECT_THAT(folder.Names(), testing::ElementsAre("d.csv"));
}

}  // namespace
