#include "host/ranges/further_pass.h"

#include <algorithm>
#include <cstdint>

#include "host/data/input_error.h"

namespace npar_host {
namespace {

constexpr const char* kFormat = "npar second pass of sorted ranges 2";
constexpr std::size_t kTwo = 2;

template <typename Counts, typename See>
void Visit(Counts& counts, See& see) {
  for (auto& count : counts) see(count);
}

}  // namespace

FurtherPass::FurtherPass(std::string_view bytes) {
  ByteReader read({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
  std::string format;
  read(format);
  read(signature);
  groups.resize(kTwo);
  Visit(groups, read);
  Visit(sizes, read);
  before.resize(read.NextCount(sizeof(SmirnovExtremes::Counts)));
  for (SmirnovExtremes::Counts& counts : before) Visit(counts, read);
  fits.resize(read.NextCount(sizeof(FittedWhole)));
  for (FitPass& fit : fits) {
    fit.Visit(read, [&read](std::size_t) { return read.NextCount(sizeof(FitStart)); });
  }
  const bool areSound = std::ranges::all_of(fits, [](const FitPass& fit) { return fit.IsSound(); });
  if (format != kFormat || !areSound || !read.IsAtEnd()) {
    throw InputError("these bytes begin no second pass; give what npar_analysis_next_pass gave");
  }
}

std::string FurtherPass::Write() const {
  ByteWriter write;
  write(std::string(kFormat));
  write(signature);
  Visit(groups, write);
  Visit(sizes, write);
  write(static_cast<std::uint64_t>(before.size()));
  for (const SmirnovExtremes::Counts& counts : before) Visit(counts, write);
  write(static_cast<std::uint64_t>(fits.size()));
  for (FitPass fit : fits) {
    fit.Visit(write, [&write](std::size_t count) {
      write(static_cast<std::uint64_t>(count));
      return count;
    });
  }
  return {write.bytes.begin(), write.bytes.end()};
}

void FurtherPass::CheckPiece(std::size_t piece) const {
  const bool isThere =
      piece < before.size() &&
      std::ranges::all_of(fits, [piece](const FitPass& fit) { return piece < fit.starts.size(); });
  if (!isThere) throw InputError("the first pass had no such piece; count pieces from 0");
}

SmirnovExtremes FurtherPass::Start(std::size_t piece) const {
  CheckPiece(piece);
  return {sizes, before[piece]};
}

FittedPieces FurtherPass::StartFits(const FittedPieces::Distributions& wanted,
                                    std::size_t piece) const {
  CheckPiece(piece);
  if (wanted.size() != fits.size()) {
    throw InputError("the second pass is of other tests; ask for those of the first one");
  }
  return {wanted, fits, piece};
}

}  // namespace npar_host
