#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "host/data/chunks.h"

namespace npar_host {

/// Codes in the order of the records, of texts or of categories: a byte each while all of them fit,
/// as most do, else four. They never move or change, and copies share them.
class Codes {
 public:
  /// Copies some behind the others.
  void Append(std::span<const std::int32_t> codes) {
    using Small = std::numeric_limits<std::int8_t>;
    const auto fits = [](std::int32_t code) {
      return code >= Small::min() && code <= Small::max();
    };
    if (wide.Size() == 0 && std::ranges::all_of(codes, fits)) {
      narrow.AppendOwned(std::vector<std::int8_t>(codes.begin(), codes.end()));
    } else {
      Widen();
      wide.AppendOwned(std::vector<std::int32_t>(codes.begin(), codes.end()));
    }
  }
  /// Adds some as they stand; `owner` keeps their memory.
  void Append(const std::int32_t* codes, std::size_t count, std::shared_ptr<const void> owner) {
    Widen();
    wide.Append(codes, count, std::move(owner));
  }

  [[nodiscard]] std::size_t Size() const noexcept { return narrow.Size() + wide.Size(); }
  [[nodiscard]] std::int32_t operator[](std::size_t record) const {
    return wide.Size() > 0 ? wide[record] : narrow[record];
  }
  template <class Use>
  void ForEach(const Use& use) const {
    narrow.ForEach(use);
    wide.ForEach(use);
  }
  /// `use(chunks)` with the chunks that hold them, of either width.
  template <class Use>
  void Visit(const Use& use) const {
    if (wide.Size() > 0) {
      use(wide);
    } else {
      use(narrow);
    }
  }

 private:
  void Widen() {
    if (narrow.Size() == 0) return;
    std::vector<std::int32_t> codes;
    codes.reserve(narrow.Size());
    narrow.ForEach([&codes](std::int8_t code) { codes.push_back(code); });
    wide = std::move(codes);
    narrow = {};
  }

  // One of them is empty.
  Chunks<std::int8_t> narrow;
  Chunks<std::int32_t> wide;
};

}  // namespace npar_host
