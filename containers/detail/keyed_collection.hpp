// KeyedCollection: the library's own form of the automation runtime's Collection. Items keep the
// order they were added in and are reached by 1-based position or by an optional unique text key,
// keys compared without regard to case.
//
// Removing an item moves the ones after it up one position, as the runtime's collection does; the
// storage gets there without shifting (see the members below). Failures raise the runtime's own
// errors: 457 for a key already in use, 5 for a key that is not there, 9 for a position outside
// 1 to count.
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

  int32_t count() const { return static_cast<int32_t>(slots_.size() - holes_); }

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

  // The 1-based position of the item under a key, or 0 when no item has it.
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
    for (const auto& entry : slots_)
      if (entry) visit(entry->item, StringView(entry->key), entry->hasKey);
  }

 private:
  struct Entry {
    Variant item;
    String key;
    bool hasKey = false;
    // Where the entry is in slots_.
    std::size_t slot = 0;
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

  // The slot of the item at a 1-based position, raising 9 outside 1 to count.
  std::size_t checkedSlot(int32_t position) const;
  // Takes the entry out of a slot and leaves a hole there; the caller has already dropped its
  // key from byKey_. The entry is handed back so that the item is released only once the
  // collection is whole again.
  std::unique_ptr<Entry> takeOut(std::size_t slot);
  void compact();
  // The index of live slots, as a Fenwick tree: ranks_[i] counts the live slots among
  // (i - lowbit(i), i], slots numbered from 1; ranks_[0] is unused.
  void buildRanks() const;
  void appendRank();
  void dropRank(std::size_t slot);
  std::size_t slotAtRank(int32_t position) const;
  int32_t rankOf(std::size_t slot) const;

  // The items in position order, each slot either an entry or a hole left by a removal; the tail
  // never ends in a hole. With n items and h holes (h <= n, as a removal that leaves more holes
  // than items closes them all up):
  // - add: amortised constant time, plus O(log(n + h)) while ranks_ is kept;
  // - lookup by key: constant time on average (byKey_);
  // - removal by key: constant time on average and amortised (the holes are closed up in
  //   O(n + h) once they outnumber the items), plus O(log(n + h)) while ranks_ is kept;
  // - item, key or removal by position: constant time while there are no holes (the usual case:
  //   no removals, or removals of the last items only); with holes, O(log(n + h)) through ranks_,
  //   built in O(n + h) by the first positional use after the holes appear and kept up to date
  //   from then on, until the holes are closed up;
  // - forEach: O(n + h).
  std::vector<std::unique_ptr<Entry>> slots_;
  std::size_t holes_ = 0;
  // Empty while unused; built on demand, so mutable for the const positional reads.
  mutable std::vector<int32_t> ranks_;
  // Views into the entries' own key texts, which stay put while the entry lives.
  std::unordered_map<StringView, Entry*, FoldedHash, FoldedEqual> byKey_;
};

}  // namespace ravelin
