#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <set>
#include <string>

#include "catalogue/catalogue.h"
#include "support/all_tests_host.h"
#include "support/loaded_component.h"
#include "support/process.h"
#include "support/schema.h"

// A run of every test, in which the host fails at one moment after the other.
namespace {

constexpr char kProgram[] = NPAR_BUILD_DIR "/bin/npar";

/// What a run without faults publishes.
std::string UndisturbedResult() {
  AllTestsHost host;
  LoadedComponent component(host);
  EXPECT_EQ(component.ConfigureAndRun(), HB_OK) << component.Messages();
  return host.Published();
}

/// The same component, on a host that is well again, gives the whole result.
void ExpectServesOn(AllTestsHost& host, LoadedComponent& component, const std::string& expected) {
  host.containers.clear();
  host.lastIdentifier = 0;
  ASSERT_EQ(component.ConfigureAndRun(), HB_OK) << component.Messages();
  EXPECT_EQ(host.Published(), expected);
  EXPECT_EQ(component.End(), HB_OK);
  EXPECT_EQ(host.OpenDocuments(), 0);
}

TEST(Faults, AllTestsDocumentIsValidAndHasEveryTest) {
  const std::string result = UndisturbedResult();
  EXPECT_TRUE(IsValid(result, "statxml-7.0.xsd"));
  for (const catalogue::Card* card : catalogue::kCards) {
    EXPECT_THAT(result, testing::HasSubstr("<Algorithm name=\"" + card->element + "\""));
  }
}

// Each moment of a run; where the code is sanitized or not optimised, and takes ten times as long,
// each seventh.
#if defined(__SANITIZE_ADDRESS__) || !defined(__OPTIMIZE__)
constexpr int kStep = 7;
#else
constexpr int kStep = 1;
#endif

enum class Road { Records, Blocks, Columns, LentColumns };

/// A run of every test on one of the roads to the records; its blocks are short, so that there are
/// moments between them.
struct FaultyHost : AllTestsHost {
  explicit FaultyHost(Road road) {
    mostInABlock = 9;
    if (road == Road::Records) iteratorTable.readBlock = nullptr;
    if (road >= Road::Columns) OfferColumns(road == Road::LentColumns);
  }
};

class Faults : public testing::TestWithParam<Road> {};
std::string RoadName(const testing::TestParamInfo<Road>& road) {
  constexpr const char* kNames[] = {"Records", "Blocks", "Columns", "LentColumns"};
  return kNames[static_cast<int>(road.param)];
}
INSTANTIATE_TEST_SUITE_P(Road, Faults,
                         testing::Values(Road::Records, Road::Blocks, Road::Columns,
                                         Road::LentColumns),
                         RoadName);

TEST_P(Faults, EveryRoadToTheRecordsGivesTheSameDocument) {
  FaultyHost host(GetParam());
  LoadedComponent component(host);
  ASSERT_EQ(component.ConfigureAndRun(), HB_OK) << component.Messages();
  EXPECT_EQ(host.Published(), UndisturbedResult());
}

TEST_P(Faults, AnyCallOfTheHostMayFail) {
  const std::string expected = UndisturbedResult();
  FaultyHost calm(GetParam());
  LoadedComponent steady(calm);
  ASSERT_EQ(steady.ConfigureAndRun(), HB_OK);
  // A run survives a host that does not say who it is, does not hear of progress, and the like.
  const std::set<std::string> kOptional = {"getInformation", "newIdentifier", "report",
                                           "beginPass",      "release",       "close",
                                           "getThreadCount"};
  const std::set<std::string> entries(calm.calls.begin(), calm.calls.end());
  for (const std::string& entry : entries) {
    const int count = calm.CallCount(entry);
    const int step = count > 100 ? kStep : 1;
    for (int number = 1; number <= count; number += step) {
      SCOPED_TRACE(entry + " " + std::to_string(number) + " of " + std::to_string(count));
      FaultyHost host(GetParam());
      LoadedComponent component(host);
      host.FailCall(entry, number);
      const std::uint32_t result = component.ConfigureAndRun();
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

TEST_P(Faults, CancelIsHeededWhereverTheHostIsAsked) {
  const std::string expected = UndisturbedResult();
  int tooLate = 0;
  for (int moment = 0;; moment += kStep) {
    SCOPED_TRACE(moment);
    FaultyHost host(GetParam());
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
      EXPECT_GT(moment, 20);
      EXPECT_LE(tooLate, 1) << "at the last report alone there is nothing left to do";
      return;
    }
    if (result == HB_OK) {
      ++tooLate;
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
TEST_P(Faults, RecordsThatChangeBetweenPassesBreakNothing) {
  for (const bool grows : {false, true}) {
    int seen = 1;
    for (int moment = 0; moment < seen; moment += kStep) {
      SCOPED_TRACE(moment);
      FaultyHost host(GetParam());
      LoadedComponent component(host);
      ASSERT_EQ(component.Configure(), HB_OK);
      seen = 0;
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
    EXPECT_GT(seen, 5);
  }
}

TEST(Faults, FullDiskAndClosedPipeLeaveNoHalfResult) {
  const TemporaryFolder folder;
  const std::string csv = folder.Write("d.csv", "x\n1\n2\n4\n");
  const std::string old = folder.Write("r.html", "old");
  const std::string run =
      std::string(kProgram) + " analyse " + csv + " --one-sample x --report html";
  const struct {
    std::string command;
    const char* reason;
  } cases[] = {
      {run + " > /dev/full", "No space left"},
      {"exec 3> >(true); wait $!; " + run + " >&3", "Broken pipe"},
      // The limit of a file's size stands for a disk that becomes full in the middle.
      {"trap '' XFSZ; ulimit -f 2; " + run + " --out " + old, "File too large"},
  };
  for (const auto& row : cases) {
    const ProcessResult result = RunProcess({"/bin/bash", "-c", row.command});
    EXPECT_EQ(result.exitCode, 2) << row.command;
    EXPECT_THAT(result.err, testing::HasSubstr(row.reason));
  }
  // A signal that ends the process in the middle takes the temporary file along.
  const ProcessResult ended =
      RunProcess({"/bin/bash", "-c", "ulimit -f 2; exec " + run + " --out " + old});
  EXPECT_EQ(ended.exitCode, 128 + SIGXFSZ);
  EXPECT_EQ(FileContent(old), "old");
  EXPECT_THAT(folder.Names(), testing::UnorderedElementsAre("d.csv", "r.html"));
}

}  // namespace
