#pragma once

#include <cstddef>
#include <memory>

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

  /// Does task(0) to task(count - 1) on any threads, the calling one among them, and comes back
  /// when all are done. A task may hand in tasks of its own. Where one throws, or the work in hand
  /// is called off (Interruption), those that have not begun are left out, those under way are
  /// called off, and what was thrown first is thrown here.
  template <typename Task>
  static void ForEach(std::size_t count, Task task) {
    Do(
        count, [](void* each, std::size_t number) { (*static_cast<Task*>(each))(number); }, &task);
  }

  struct Team;

 private:
  static void Do(std::size_t count, void (*run)(void*, std::size_t), void* task);

  std::unique_ptr<Team> team;
  Team* outer;
};
