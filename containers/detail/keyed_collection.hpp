// KeyedCollection: the library's own form of the automation runtime's Collection. Items keep the
// order they were added in and are reached by 1-based position or by an optional unique text key,
// keys compared without regard to case.
//
// Positions index a vector and keys a hash table, so both lookups take constant time; removing
// an item shifts the ones after it, as the runtime's collection does. Failures raise the runtime's
// own errors: 457 for a key already in use, 5 for a key that is not there, 9 for a position
// outside 1 to count.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <ravelin/base/text.hpp>
#include <ravelin/frame/variant.hpp>
#include <unordered_map>
#include <vector>

namespace ravelin {

class KeyedCollection {
 public:
  KeyedCollection();
  ~KeyedCollection();
  KeyedCollection(KeyedCollection&&) noexcept;
  KeyedCollection& operator=(KeyedCollection&&) noexcept;

  int32_t count() const { return static_cast<int32_t>(entries_.size()); }

  // Appends an item, under `key` when one is given. Raises 457 when another item has the key
  // (the collection is then unchanged).
  void add(Variant item, std::optional<StringView> key = std::nullopt);

  // The item at a 1-based position (9 outside 1 to count) or under a key (5 when absent).
  const Variant& item(int32_t position) const;
  const Variant& item(StringView key) const;
  // A text argument is a key; any other value is a position as CLng reads it (so Null raises
  // 94, an array or object 13, a number past the Long range 6).
  const Variant& itemAt(const Variant& positionOrKey) const;

  // The key of the item at a position (9 outside 1 to count); empty for an item without one.
  StringView keyAt(int32_t position) const;
  bool hasKey(int32_t position) const;

  // The item under a key, or null when no item has it (constant time).
  const Variant* find(StringView key) const;

  // The 1-based position of the item under a key, or 0 when no item has it (a scan).
  int32_t positionOf(StringView key) const;

  // Removes one item (errors as for item); the items after it move up one position. removeAt
  // reads its argument as itemAt does.
  void remove(int32_t position);
  void remove(StringView key);
  void removeAt(const Variant& positionOrKey);

  void clear();

  // Calls visit(item, key, hasKey) for each item in position order.
  template <typename Visit>
  void forEach(Visit visit) const {
    for (const auto& entry : entries_)
      visit(entry->item, StringView(entry->key), entry->hasKey);
  }

 private:
  struct Entry {
    Variant item;
    String key;
    bool hasKey = false;
  };
  // Hash and equality of keys without regard to case, by the library's one case folding.
  struct FoldedHash {
    using is_transparent = void;
    std::size_t operator()(StringView key) const noexcept;
  };
  struct FoldedEqual {
    using is_transparent = void;
    bool operator()(StringView a, StringView b) const noexcept;
  };

  // The position (0-based) of an entry, found by scanning the pointers.
  std::size_t indexOf(const Entry* entry) const;
  std::size_t checkedIndex(int32_t position) const;
  void eraseAt(std::size_t index);

  std::vector<std::unique_ptr<Entry>> entries_;
  // Views into the entries' own key texts, which stay put while the entry lives.
  std::unordered_map<StringView, Entry*, FoldedHash, FoldedEqual> byKey_;
};

}  // namespace ravelin
