#include "host/data/dataset.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

namespace npar_host {

void RowStore::AddBlock() {
  const std::size_t count = rowsOfBlock * width;
  blocks.push_back(std::make_unique_for_overwrite<double[]>(count));
#ifdef MADV_POPULATE_WRITE
  // Pages are had all at once for less than one by one when they are written to, a tenth of the
  // time that reading takes. Short data keeps to what it needs, and so do systems that refuse.
  if (blocks.size() == 1) return;
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const auto begin = reinterpret_cast<std::uintptr_t>(blocks.back().get());
  const std::uintptr_t first = (begin + page - 1) / page * page;
  const std::uintptr_t end = (begin + count * sizeof(double)) / page * page;
  if (first >= end) return;
  static_cast<void>(madvise(blocks.back().get() + (first - begin) / sizeof(double), end - first,
                            MADV_POPULATE_WRITE));
#endif
}

}  // namespace npar_host
