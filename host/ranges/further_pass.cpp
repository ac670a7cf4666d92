#include "host/ranges/further_pass.h"

#include <cstdint>

#include "host/data/input_error.h"

namespace npar_host {
namespace {

constexpr const char* kFormat = "npar second pass of sorted ranges 1";
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
  if (format != kFormat || !read.IsAtEnd()) {
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
  return {write.bytes.begin(), write.bytes.end()};
}

SmirnovExtremes FurtherPass::Start(std::size_t piece) const {
  if (piece >= before.size()) {
    throw InputError("the first pass had no such piece; count pieces from 0");
  }
  return {sizes, before[piece]};
}

}  // namespace npar_host
