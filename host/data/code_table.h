#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

namespace npar_host {

/// Finds the code of a value: an open table of hashes and codes, at most half full. The values
/// themselves are the owner's.
class CodeTable {
 public:
  static constexpr std::uint32_t kNone = 0xFFFFFFFFU;

  /// The code of the value with that hash for which `isSame(code)` holds, kNone without one.
  template <class IsSame>
  [[nodiscard]] std::uint32_t Find(std::uint64_t hash, const IsSame& isSame) const {
    const std::size_t mask = slots.size() - 1;
    const auto mark = static_cast<std::uint32_t>(hash >> 32);
    for (std::size_t index = mark & mask;; index = (index + 1) & mask) {
      const Slot& slot = slots[index];
      if (slot.code == kNone) return kNone;
      if (slot.mark == mark && isSame(slot.code)) return slot.code;
    }
  }

  /// Adds a value that Find does not find; codes count up from 0.
  void Add(std::uint64_t hash) {
    if (2 * (count + 1) > slots.size()) Grow();
    Put({static_cast<std::uint32_t>(hash >> 32), static_cast<std::uint32_t>(count++)});
  }

 private:
  struct Slot {
    std::uint32_t mark = 0;
    std::uint32_t code = kNone;
  };

  void Put(Slot slot) {
    const std::size_t mask = slots.size() - 1;
    std::size_t index = slot.mark & mask;
    while (slots[index].code != kNone) index = (index + 1) & mask;
    slots[index] = slot;
  }

  void Grow() {
    std::vector<Slot> old(2 * slots.size());
    old.swap(slots);
    for (const Slot& slot : old) {
      if (slot.code != kNone) Put(slot);
    }
  }

  std::vector<Slot> slots = std::vector<Slot>(64);
  std::size_t count = 0;
};

/// Different texts, each kept once, with codes from 0 in the order of their first appearance.
class TextPool {
 public:
  /// The code of a text, CodeTable::kNone for one that is not kept. Allocates nothing.
  [[nodiscard]] std::uint32_t Find(std::string_view text) const { return Find(text, Hash(text)); }

  /// The code of a text, which is kept if it is new; `isNew` tells.
  std::uint32_t Add(std::string_view text, bool& isNew) {
    const std::uint64_t hash = Hash(text);
    const std::uint32_t known = Find(text, hash);
    isNew = known == CodeTable::kNone;
    if (!isNew) return known;
    texts.push_back(Keep(text));
    table.Add(hash);
    return static_cast<std::uint32_t>(texts.size() - 1);
  }

  [[nodiscard]] std::size_t Size() const noexcept { return texts.size(); }
  /// Good as long as the pool, also when it is moved.
  [[nodiscard]] std::string_view operator[](std::size_t code) const { return texts[code]; }

 private:
  static constexpr std::size_t kChunk = std::size_t{1} << 16;
  static constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15U;

  static std::uint64_t Mix(std::uint64_t hash, std::uint64_t bytes) {
    hash = (hash ^ bytes) * kMultiplier;
    return hash ^ (hash >> 29);
  }

  static std::uint64_t Load(const char* bytes, std::size_t count) {
    std::uint64_t value = 0;
    if (count >= 8) {
      std::memcpy(&value, bytes, 8);
    } else if (count >= 4) {  // two loads that overlap
      std::uint32_t low;
      std::uint32_t high;
      std::memcpy(&low, bytes, 4);
      std::memcpy(&high, bytes + count - 4, 4);
      value = std::uint64_t{low} << 32 | high;
    } else if (count > 0) {
      const auto byte = [bytes](std::size_t i) {
        return std::uint64_t{static_cast<unsigned char>(bytes[i])};
      };
      value = byte(0) << 16 | byte(count / 2) << 8 | byte(count - 1);
    }
    return value;
  }

  static std::uint64_t Hash(std::string_view text) {
    std::uint64_t hash = text.size() * kMultiplier;
    const char* bytes = text.data();
    std::size_t left = text.size();
    for (; left > 8; bytes += 8, left -= 8) hash = Mix(hash, Load(bytes, 8));
    return Mix(hash, Load(bytes, left)) * kMultiplier;
  }

  [[nodiscard]] std::uint32_t Find(std::string_view text, std::uint64_t hash) const {
    return table.Find(hash, [&](std::uint32_t code) { return texts[code] == text; });
  }

  std::string_view Keep(std::string_view text) {
    if (text.empty()) return {};
    if (text.size() > left) {
      left = text.size() > kChunk ? text.size() : kChunk;
      chunks.push_back(std::make_unique_for_overwrite<char[]>(left));
      free = chunks.back().get();
    }
    std::memcpy(free, text.data(), text.size());
    const std::string_view kept(free, text.size());
    free += text.size();
    left -= text.size();
    return kept;
  }

  CodeTable table;
  std::vector<std::string_view> texts;
  std::vector<std::unique_ptr<char[]>> chunks;
  char* free = nullptr;
  std::size_t left = 0;
};

/// Different numbers with codes as in TextPool; 0 and -0 are one.
class NumberPool {
 public:
  std::uint32_t Add(double number) {
    number += 0.0;  // -0 becomes 0
    const std::uint64_t bits = std::bit_cast<std::uint64_t>(number);
    const std::uint64_t hash = (bits ^ (bits >> 32)) * 0x9E3779B97F4A7C15U;
    const std::uint32_t known =
        table.Find(hash, [&](std::uint32_t code) { return numbers[code] == number; });
    if (known != CodeTable::kNone) return known;
    numbers.push_back(number);
    table.Add(hash);
    return static_cast<std::uint32_t>(numbers.size() - 1);
  }

  [[nodiscard]] std::size_t Size() const noexcept { return numbers.size(); }
  [[nodiscard]] double operator[](std::size_t code) const { return numbers[code]; }

 private:
  CodeTable table;
  std::vector<double> numbers;
};

}  // namespace npar_host
