#include "kit/order/threads.h"

#include <atomic>
#include <exception>
#include <new>
#include <thread>
#include <utility>
#include <vector>

#include "kit/order/per_thread.h"

// Tasks are handed in as jobs. Whoever hands in a job works on it until no task of it is left, and
// then, while others still work on it, on jobs that its tasks have handed in; so nobody waits for a
// task that nobody does. A thread without a job of its own takes a task of the oldest job: the
// first handed in are the longest.

namespace {

struct Job {
  Job(void (*run)(void*, std::size_t), void* task, std::size_t count, Job* parent) noexcept
      : run(run), task(task), count(count), parent(parent) {}

  void (*run)(void*, std::size_t);
  void* task;
  std::size_t count;
  Job* parent;  // whose task handed it in
  // Below: while the team's mutex is held, but for the flag.
  std::size_t next = 0;
  std::size_t underWay = 0;
  std::exception_ptr error;
  std::atomic<bool> isCalledOff{false};

  [[nodiscard]] bool HasTask() const noexcept { return next < count && error == nullptr; }
  [[nodiscard]] bool IsWithin(const Job* ancestor) const noexcept {
    const Job* job = this;
    while (job != nullptr && job != ancestor) job = job->parent;
    return job == ancestor;
  }
  void Fail(std::exception_ptr thrown) noexcept {
    if (error == nullptr) error = std::move(thrown);
    isCalledOff = true;
  }
};

PerThread<Threads::Team> teamInHand;
PerThread<Job> jobInHand;

/// Of a task: the job is called off, or on the thread that handed it in what that one had in hand.
class TaskInterruption final : public Interruption {
 public:
  explicit TaskInterruption(const Job& job) noexcept : job(job) {}

 private:
  bool ShallStop() override {
    return job.isCalledOff.load(std::memory_order_relaxed) || ShallOuterStop();
  }
  const Job& job;
};

}  // namespace

struct Threads::Team {
  explicit Team(std::size_t most) noexcept : most(most) {}
  ~Team();

  void Do(Job& job);
  [[nodiscard]] std::size_t Most() const noexcept { return most; }

 private:
  using Lock = std::unique_lock<std::mutex>;

  void StartThreads(const Job& job);
  void Work();
  /// The oldest job within `ancestor`, or of all for null, that has a task left.
  [[nodiscard]] Job* FindJob(const Job* ancestor) const noexcept;
  void DoTask(Job& job, Lock& lock);
  void AwaitOthers(Job& job, Lock& lock);

  std::atomic<std::size_t> most;
  std::mutex mutex;
  std::condition_variable change;  // a job was handed in, or has ended
  std::vector<Job*> jobs;
  bool isEnding = false;
  std::vector<std::thread> threads;
};

Threads::Team::~Team() {
  {
    const Lock lock(mutex);
    isEnding = true;
  }
  change.notify_all();
  for (std::thread& thread : threads) thread.join();
}

void Threads::Team::StartThreads(const Job& job) {
  const std::size_t wanted = std::min(most.load(), job.count) - 1;
  try {
    threads.reserve(wanted);
    while (threads.size() < wanted) threads.emplace_back([this] { Work(); });
  } catch (const std::exception&) {
    most = threads.size() + 1;  // the system gives no more
  }
}

void Threads::Team::Work() {
  teamInHand.Set(this);
  Lock lock(mutex);
  while (!isEnding) {
    if (Job* job = FindJob(nullptr)) {
      DoTask(*job, lock);
    } else {
      change.wait(lock);
    }
  }
}

Job* Threads::Team::FindJob(const Job* ancestor) const noexcept {
  const auto found = std::find_if(jobs.begin(), jobs.end(), [ancestor](const Job* job) {
    return job->HasTask() && (ancestor == nullptr || job->IsWithin(ancestor));
  });
  return found == jobs.end() ? nullptr : *found;
}

void Threads::Team::DoTask(Job& job, Lock& lock) {
  const std::size_t number = job.next++;
  ++job.underWay;
  lock.unlock();
  std::exception_ptr thrown;
  Job* const outerJob = jobInHand.Get();
  jobInHand.Set(&job);
  try {
    const TaskInterruption interruption(job);
    job.run(job.task, number);
  } catch (...) {
    thrown = std::current_exception();
  }
  jobInHand.Set(outerJob);
  lock.lock();
  if (thrown != nullptr) job.Fail(std::move(thrown));
  --job.underWay;
  if (job.underWay == 0 && !job.HasTask()) change.notify_all();
}

void Threads::Team::AwaitOthers(Job& job, Lock& lock) {
  while (job.underWay > 0) {
    if (Job* within = FindJob(&job)) {
      DoTask(*within, lock);
      continue;
    }
    change.wait_for(lock, kBetweenChecks);
    lock.unlock();
    const bool isCalledOff = Interruption::IsCalledOff();
    lock.lock();
    if (isCalledOff) job.Fail(std::make_exception_ptr(Interrupted()));
  }
}

void Threads::Team::Do(Job& job) {
  Lock lock(mutex);
  jobs.push_back(&job);
  StartThreads(job);
  change.notify_all();
  while (job.HasTask()) DoTask(job, lock);
  AwaitOthers(job, lock);
  std::erase(jobs, &job);
  lock.unlock();
  if (job.error != nullptr) std::rethrow_exception(job.error);
}

Threads::Threads(std::size_t most) noexcept : outer(teamInHand.Get()) {
  try {
    if (most > 1) team = std::make_unique<Team>(most);
  } catch (const std::bad_alloc&) {
    team = nullptr;  // one thread does it all
  }
  teamInHand.Set(team.get());
}

Threads::~Threads() { teamInHand.Set(outer); }

std::size_t Threads::Count() noexcept {
  const Team* const inHand = teamInHand.Get();
  return inHand == nullptr ? 1 : inHand->Most();
}

void Threads::Do(std::size_t count, void (*run)(void*, std::size_t), void* task) {
  Team* const inHand = teamInHand.Get();
  if (inHand == nullptr || count < 2) {
    for (std::size_t number = 0; number < count; ++number) run(task, number);
    return;
  }
  Job job(run, task, count, jobInHand.Get());
  inHand->Do(job);
}
