#include "kit/order/threads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "kit/order/interruption.h"

namespace {

TEST(Threads, EachTaskIsDoneOnceWhereverItIsHandedIn) {
  for (const std::size_t most : {1U, 2U, 3U, 7U}) {
    SCOPED_TRACE(most);
    const Threads threads(most);
    EXPECT_EQ(Threads::Count(), most);
    for (const std::size_t count : {0U, 1U, 2U, 40U}) {
      constexpr std::size_t kWithin = 5;
      std::vector<std::atomic<int>> done(count * kWithin);
      Threads::ForEach(count, [&](std::size_t task) {
        Threads::ForEach(kWithin, [&](std::size_t within) { ++done[task * kWithin + within]; });
      });
      for (const auto& times : done) EXPECT_EQ(times, 1);
    }
  }
  EXPECT_EQ(Threads::Count(), 1U);
}

TEST(Threads, TasksOfTwoThreadsAreUnderWayAtOnce) {
  const Threads threads(2);
  std::atomic<int> begun{0};
  Threads::ForEach(2, [&](std::size_t) {
    ++begun;
    while (begun < 2) std::this_thread::yield();  // for ever, if one waited for the other
  });
  EXPECT_EQ(begun, 2);
}

// The other task waits until it is called off, as long work does.
// Asks now and then, as all work does: where a thread does nothing but ask, no other one of Wine's
// gets to unwind its stack.
void WorkUntilCalledOff() {
  SparseCheck check;
  while (true) check.Step();
}

TEST(Threads, WhatATaskThrowsComesBackAndEndsTheOthers) {
  for (const std::size_t most : {1U, 2U}) {
    const Threads threads(most);
    std::atomic<int> begun{0};
    const auto run = [&] {
      Threads::ForEach(10, [&](std::size_t task) {
        if (++begun == static_cast<int>(most)) throw std::runtime_error(std::to_string(task));
        WorkUntilCalledOff();
      });
    };
    EXPECT_THROW(run(), std::runtime_error);
    EXPECT_EQ(begun, static_cast<int>(most)) << "none begins after the failure";
    std::atomic<int> done{0};
    Threads::ForEach(10, [&](std::size_t) { ++done; });
    EXPECT_EQ(done, 10) << "further tasks are done";
  }
}

TEST(Threads, AnInterruptionOfTheCallerReachesAllTasks) {
  class Flag final : public Interruption {
   public:
    std::atomic<bool> isUp{false};

   private:
    bool ShallStop() override {
      EXPECT_EQ(std::this_thread::get_id(), own) << "only the caller's thread is asked";
      return isUp;
    }
    std::thread::id own = std::this_thread::get_id();
  } flag;
  const Threads threads(3);
  std::atomic<int> waiting{0};
  std::thread later([&] {
    while (waiting < 2) std::this_thread::yield();
    flag.isUp = true;
  });
  const std::thread::id own = std::this_thread::get_id();
  const auto run = [&] {
    Threads::ForEach(3, [&](std::size_t) {
      if (std::this_thread::get_id() == own) {
        while (waiting < 2) std::this_thread::yield();
        return;  // and waits for the others
      }
      ++waiting;
      WorkUntilCalledOff();
    });
  };
  EXPECT_THROW(run(), Interrupted);
  later.join();
}

}  // namespace
