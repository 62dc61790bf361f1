// The keyed, 1-based collections of the public record classes.
#pragma once

#include "model/text.h"

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace qx {

/// Items in the order in which they were added, found by 1-based position or by key. Keys compare without
/// regard to ASCII case; the key is the one that the item had when it was added. Items are shared with the
/// caller, as automation objects are.
///
/// A position or key that does not exist raises `std::out_of_range` and leaves the collection unchanged.
template <class ItemType, std::string ItemType::*key>
class KeyedCollection {
public:
  using Pointer = std::shared_ptr<ItemType>;

  /// False, without a change, when the key is already present or the item is null.
  bool Add(const Pointer& item) {
    if (!item || !indexes_.emplace(asciiLower((*item).*key), items_.size()).second) return false;
    items_.push_back(item);
    return true;
  }
  const Pointer& Item(std::int32_t index) const { return items_.at(offset(index)); }
  const Pointer& Item(std::string_view itemKey) const { return items_[indexOf(itemKey)]; }
  std::int32_t Count() const { return static_cast<std::int32_t>(items_.size()); }
  void Remove(std::int32_t index) { removeAt(offset(index)); }
  void Remove(std::string_view itemKey) { removeAt(indexOf(itemKey)); }

  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }

private:
  std::size_t indexOf(std::string_view itemKey) const {
    const auto found = indexes_.find(asciiLower(itemKey));
    if (found == indexes_.end())
      throw std::out_of_range("the collection has no item with the key '" + std::string(itemKey) + "'");
    return found->second;
  }
  void removeAt(std::size_t removed) {
    std::erase_if(indexes_, [&](const auto& entry) { return entry.second == removed; });
    for (auto& [ignored, at] : indexes_)
      if (at > removed) --at;
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(removed));
  }
  std::size_t offset(std::int32_t index) const {
    if (index < 1 || index > Count())
      throw std::out_of_range("the collection has no item " + std::to_string(index));
    return static_cast<std::size_t>(index) - 1;
  }

  std::vector<Pointer> items_;
  std::unordered_map<std::string, std::size_t> indexes_; ///< of the keys, without regard to case
};

} // namespace qx
