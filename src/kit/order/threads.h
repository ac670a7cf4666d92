#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>

#include "kit/order/interruption.h"

/// The threads that a run may use, the one that made this among them. Whoever begins a run makes it
/// and keeps it until the end; what does the work, however deep below, hands tasks to it. The
/// others are started when there are tasks for them first.
class Threads {
 public:
  /// `most`: how many may work at once, at least 1.
  explicit Threads(std::size_t most) noexcept;
  Threads(const Threads&) = delete;
  Threads& operator=(const Threads&) = delete;
  ~Threads();

  /// How many tasks of the calling thread may be under way at once: 1 where nobody made threads.
  [[nodiscard]] static std::size_t Count() noexcept;
  /// Into how many parts records, or entries of an order, are divided for threads. A part takes a
  /// third of a millisecond or more, 5 ns a record being what the quickest loops take; to start a
  /// thread for it takes 10 us, to hand it to one that waits a few.
  [[nodiscard]] static std::size_t PartsOf(std::size_t records) noexcept {
    constexpr std::size_t kRecordsOfPart = std::size_t{1} << 16;
    return std::clamp<std::size_t>(records / kRecordsOfPart, 1, Count());
  }
  /// Is there work for several threads in so many records?
  [[nodiscard]] static bool AreWorthIt(std::size_t records) noexcept {
    return PartsOf(2 * records) > 1;
  }

  /// Does task(0) to task(count - 1) on any threads, the calling one among them, and comes back
  /// when all are done. A task may hand in tasks of its own. Where one throws, or the work in hand
  /// is called off (Interruption), those that have not begun are left out, those under way are
  /// called off, and what was thrown first is thrown here.
  template <typename Task>
  static void ForEach(std::size_t count, Task task) {
    Do(
        count, [](void* each, std::size_t number) { (*static_cast<Task*>(each))(number); }, &task);
  }

  /// Waits for what others change while they hold the mutex: until `isDone`, unless the work in
  /// hand is called off; then it throws Interrupted.
  template <typename IsDone>
  static void Await(std::unique_lock<std::mutex>& lock, std::condition_variable& change,
                    IsDone isDone) {
    while (!isDone()) {
      change.wait_for(lock, kBetweenChecks);
      lock.unlock();
      Interruption::Check();
      lock.lock();
    }
  }

  struct Team;

 private:
  /// Short enough that a cancel is heeded at once, as far as a person can tell.
  static constexpr std::chrono::milliseconds kBetweenChecks{10};

  static void Do(std::size_t count, void (*run)(void*, std::size_t), void* task);

  std::unique_ptr<Team> team;
  Team* outer;
};
