// The keyed, 1-based collections of the public record classes.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// Items in the order in which they were added, found by 1-based position or by key. Keys compare without
/// regard to ASCII case. Items are shared with the caller, as automation objects are.
///
/// A position or key that does not exist raises `std::out_of_range` and leaves the collection unchanged.
template <class ItemType, std::string ItemType::*key>
class KeyedCollection {
public:
  using Pointer = std::shared_ptr<ItemType>;

  /// False, and nothing changed, when the key is already present or there is no item.
  bool Add(const Pointer& item) {
    if (!item || find((*item).*key) != items_.end()) return false;
    items_.push_back(item);
    return true;
  }
  const Pointer& Item(std::int32_t index) const { return items_.at(offset(index)); }
  const Pointer& Item(std::string_view itemKey) const { return *existing(itemKey); }
  std::int32_t Count() const { return static_cast<std::int32_t>(items_.size()); }
  void Remove(std::int32_t index) {
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(offset(index)));
  }
  void Remove(std::string_view itemKey) { items_.erase(existing(itemKey)); }

  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }

private:
  static bool sameKey(std::string_view a, std::string_view b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; };
    return std::ranges::equal(a, b, [&](char x, char y) { return lower(x) == lower(y); });
  }
  auto find(std::string_view itemKey) const {
    return std::ranges::find_if(items_, [&](const Pointer& item) { return sameKey((*item).*key, itemKey); });
  }
  auto existing(std::string_view itemKey) const {
    const auto found = find(itemKey);
    if (found == items_.end())
      throw std::out_of_range("the collection has no item of the key '" + std::string(itemKey) + "'");
    return found;
  }
  std::size_t offset(std::int32_t index) const {
    if (index < 1 || index > Count())
      throw std::out_of_range("the collection has no item " + std::to_string(index));
    return static_cast<std::size_t>(index) - 1;
  }

  std::vector<Pointer> items_;
};

} // namespace qx
