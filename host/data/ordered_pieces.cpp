#include "host/data/ordered_pieces.h"

#include <algorithm>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace npar_host {
namespace {

class Run {
 public:
  explicit Run(const OrderedPieces& pieces) : pieces(pieces), isDone(pieces.count) {}

  void OnAllThreads() {
    const std::size_t most = std::min(pieces.threads, pieces.count);
    std::vector<std::thread> others;
    others.reserve(most);
    try {
      while (others.size() + 1 < most) others.emplace_back([this] { OnThisThread(); });
    } catch (const std::system_error&) {
      // The system has no thread to spare; those that there are do the work.
    }
    OnThisThread();
    for (std::thread& other : others) other.join();
    if (failure) std::rethrow_exception(failure);
  }

 private:
  void OnThisThread() {
    std::unique_lock lock(mutex);
    try {
      while (WaitForPiece(lock)) {
        const std::size_t piece = next++;
        const bool isInTurn = piece == taken;
        lock.unlock();
        pieces.work(piece, isInTurn);
        lock.lock();
        isDone[piece] = 1;
        TakeInOrder(lock);
      }
    } catch (...) {
      if (!lock.owns_lock()) lock.lock();
      if (!failure) failure = std::current_exception();
    }
    changed.notify_all();
  }

  /// False where none is left. What is worked ahead of its turn may have to be done again, and
  /// takes memory.
  bool WaitForPiece(std::unique_lock<std::mutex>& lock) {
    const auto isOver = [this] { return failure || next == pieces.count; };
    changed.wait(lock, [&] { return isOver() || next < taken + 2 * pieces.threads; });
    return !isOver();
  }

  void TakeInOrder(std::unique_lock<std::mutex>& lock) {
    while (!failure && !isTaking && taken < pieces.count && isDone[taken] != 0) {
      isTaking = true;
      lock.unlock();
      pieces.take(taken);
      lock.lock();
      isTaking = false;
      ++taken;
      changed.notify_all();
    }
  }

  const OrderedPieces& pieces;
  std::mutex mutex;  // of all that follows
  std::condition_variable changed;
  std::vector<std::uint8_t> isDone;
  std::size_t next = 0;
  std::size_t taken = 0;
  bool isTaking = false;
  std::exception_ptr failure;
};

}  // namespace

void OrderedPieces::Run() const { npar_host::Run(*this).OnAllThreads(); }

}  // namespace npar_host
