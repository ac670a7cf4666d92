#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "support/all_tests_host.h"
#include "support/loaded_component.h"
#include "support/parameters_text.h"

namespace {

/// Continuous fields x0, x1, ... beside a group; each has a value missing now and then, and some
/// that tie.
struct FieldsHost : RecordingHost {
  FieldsHost(int fieldCount, std::size_t recordCount) {
    std::vector<std::string> names;
    for (int i = 0; i < fieldCount; ++i) {
      names.push_back("x" + std::to_string(i));
      fields += "<Field name='" + names.back() + "' measure='continuous'/>";
    }
    fields += "<Field name='g' measure='nominal'><Value value='a'/><Value value='b'/></Field>";
    parameters = "<Parameters>" + ListParameter("oneSampleVariables", names) + Family("OneSample") +
                 Selected("OWilcoxonSignedRanks", Attribute("testValue", "0.25")) +
                 ListParameter("independentVariables", names) +
                 ListParameter("groupVariable", {"g"}) + Family("Independent") +
                 Selected("IMannWhitneyU") + Selected("IKolmogorovSmirnov") + Selected("IKMedian");
    if (fieldCount > 1) {
      parameters += ListParameter("relatedVariables", {"x0", "x1"}) + Family("Related") +
                    Selected("RWilcoxonSignedRanks");
    }
    parameters += "</Parameters>";
    std::mt19937_64 random(7);
    std::normal_distribution<double> normal;
    for (std::size_t i = 0; i < recordCount; ++i) {
      std::vector<double>& record = records.emplace_back();
      for (int field = 0; field < fieldCount; ++field) {
        const double value = normal(random);
        record.push_back(random() % 64 == 0  ? HB_MISSING_VALUE
                         : random() % 4 == 0 ? static_cast<double>(static_cast<int>(value * 8)) / 8
                                             : value);
      }
      record.push_back(static_cast<double>(random() % 2));
    }
  }
};

struct Outcome {
  std::string document;
  std::vector<RecordingHost::DeliveredMessage> messages;
};

Outcome RunWith(RecordingHost& host, std::uint32_t threads) {
  host.threads = threads;
  host.lastIdentifier = 0;
  host.messages.clear();
  host.containers.clear();
  LoadedComponent component(host);
  EXPECT_EQ(component.ConfigureAndRun(), HB_OK) << component.Messages();
  return {host.Published(), host.messages};
}

void ExpectTheSameWithAnyNumber(RecordingHost& host) {
  const Outcome expected = RunWith(host, 1);
  ASSERT_NE(expected.document, "");
  for (const std::uint32_t threads : {2U, 3U, 7U}) {
    SCOPED_TRACE(threads);
    const Outcome outcome = RunWith(host, threads);
    EXPECT_TRUE(outcome.document == expected.document) << "not to the last byte";
    EXPECT_EQ(outcome.messages, expected.messages);
  }
}

TEST(RunThreads, EveryTestGivesTheSameDocumentWithAnyNumber) {
  AllTestsHost host(70000);
  ExpectTheSameWithAnyNumber(host);
}

TEST(RunThreads, OrdersAndWalksSideBySideGiveTheSameDocument) {
  for (const int fieldCount : {1, 5}) {  // one order: its tests walk it side by side
    SCOPED_TRACE(fieldCount);
    FieldsHost host(fieldCount, 300000);
    ExpectTheSameWithAnyNumber(host);
  }
}

TEST(RunThreads, AHostThatFailsToTellTheirNumberGetsOne) {
  AllTestsHost host(20);
  const std::string expected = RunWith(host, 0).document;
  host.FailCall("getThreadCount", 1);
  EXPECT_EQ(RunWith(host, 2).document, expected);
}

TEST(RunThreads, ACancelIsHeededWhileOthersAreAtWork) {
  using Clock = std::chrono::steady_clock;
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  constexpr std::chrono::milliseconds kMost{2000};
#else
  constexpr std::chrono::milliseconds kMost{200};
#endif
  FieldsHost host(5, 300000);
  host.threads = 2;
  for (const double moment : {5.0, 15.0, 30.0, 60.0}) {
    SCOPED_TRACE(moment);
    host.messages.clear();
    LoadedComponent component(host);
    ASSERT_EQ(component.Configure(), HB_OK);
    std::atomic<bool> isReached = false;
    host.onProgress = [&](double done) {
      EXPECT_LT(done, 100.0);
      if (done >= moment) isReached.store(true);
    };
    std::atomic<Clock::time_point> cancelled{};
    std::thread other([&] {
      while (!isReached.load()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
      cancelled.store(Clock::now());
      std::int32_t err = 0;
      LoadedLibrary::Instance().cancelExecution(component.Handle(), &err);
    });
    EXPECT_NE(component.Begin(), HB_OK);
    const Clock::time_point end = Clock::now();
    other.join();
    EXPECT_LT(end - cancelled.load(), kMost);
    EXPECT_EQ(host.messages.back(), (RecordingHost::DeliveredMessage{3, 1, {}}));
  }
}

TEST(RunThreads, ProgressIsToldOftenAndOnTheCallersThread) {
  FieldsHost host(5, 800000);
  for (const std::uint32_t threads : {1U, 2U}) {
    SCOPED_TRACE(threads);
    const std::thread::id own = std::this_thread::get_id();
    host.progress.clear();
    host.onProgress = [own](double) { EXPECT_EQ(std::this_thread::get_id(), own); };
    RunWith(host, threads);
    EXPECT_TRUE(std::is_sorted(host.progress.begin(), host.progress.end()));
    const std::set<double> different(host.progress.begin(), host.progress.end());
    EXPECT_GE(different.size(), 50U);
    EXPECT_LT(*different.begin(), 13.0) << "while records are read";
    EXPECT_EQ(*different.rbegin(), 90.0);
  }
}

}  // namespace
