#pragma once

#include <cstddef>
#include <functional>

namespace npar_host {

/// Does work in numbered pieces on several threads, the caller's among them, and takes what came of
/// it in the order of the numbers, one piece at a time, on whichever thread.
struct OrderedPieces {
  std::size_t count = 0;
  std::size_t threads = 1;
  /// `isInTurn`: all pieces before it are taken, and none is until this one is.
  std::function<void(std::size_t piece, bool isInTurn)> work;
  std::function<void(std::size_t piece)> take;

  /// Returns once all pieces are taken, or throws the first exception that `work` or `take` threw;
  /// no thread of it is left then.
  void Run() const;
};

}  // namespace npar_host
