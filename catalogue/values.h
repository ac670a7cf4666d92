#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

/// What the values of a card are made of: constant, and never left out by accident.
namespace catalogue {

/// "This card has none", said on purpose: nothing that a card holds can be forgotten, since its
/// types have no default.
struct None {};
inline constexpr None kNone{};

/// A text of the catalogue, never empty unless it is kNone.
class Text {
 public:
  constexpr Text(const char* text) : text(text) {
    if (this->text.empty()) throw "a text of the catalogue is empty";
  }
  constexpr Text(None) : text("") {}

  [[nodiscard]] constexpr bool empty() const noexcept { return text.empty(); }
  [[nodiscard]] constexpr const char* c_str() const noexcept { return text.data(); }
  constexpr operator std::string_view() const noexcept { return text; }

  friend constexpr bool operator==(Text a, Text b) noexcept { return a.text == b.text; }
  friend constexpr bool operator==(Text a, std::string_view b) noexcept { return a.text == b; }
  friend constexpr bool operator==(Text a, const char* b) noexcept { return a.text == b; }
  friend std::string operator+(std::string a, Text b) { return a.append(b.text); }
  friend std::string operator+(Text a, std::string_view b) { return std::string(a.text).append(b); }

 private:
  std::string_view text;
};

/// A value that has to be given.
template <typename Value>
class Required {
 public:
  constexpr Required(Value value) : value(value) {}
  constexpr operator Value() const noexcept { return value; }

 private:
  Value value;
};

/// Items that stand elsewhere; kNone for an empty list.
template <typename Item>
class List {
 public:
  constexpr List(None) {}
  template <std::size_t count>
  constexpr List(const Item (&items)[count]) : first(items), count(count) {}
  template <std::size_t count>
  constexpr List(const std::array<Item, count>& items) : first(items.data()), count(count) {}

  [[nodiscard]] constexpr const Item* begin() const noexcept { return first; }
  [[nodiscard]] constexpr const Item* end() const noexcept { return first + count; }
  [[nodiscard]] constexpr const Item* data() const noexcept { return first; }
  [[nodiscard]] constexpr std::size_t size() const noexcept { return count; }
  [[nodiscard]] constexpr bool empty() const noexcept { return count == 0; }
  constexpr const Item& operator[](std::size_t index) const { return first[index]; }

 private:
  const Item* first = nullptr;
  std::size_t count = 0;
};

}  // namespace catalogue
