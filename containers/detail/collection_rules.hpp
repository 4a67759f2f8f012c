// The rules the collection classes add over KeyedCollection: failures turned into false, the
// flags of add, replacement under the same key, and the library's errors for a caller that asks
// for them.
#pragma once

#include <cstdint>
#include <ravelin/base/text.hpp>
#include <ravelin/containers/detail/keyed_collection.hpp>
#include <ravelin/frame/variant.hpp>

namespace ravelin::detail {

class CollectionRules {
 public:
  int32_t getCount() const { return items_.count(); }

  // Adds an item at the end under vsKey; true on success. When the key is taken, the result is
  // false unless a flag is set: vbIgnoreErrorIfAlreadyExists (tested first) keeps the existing
  // item and gives true; vbOverride removes it and adds the new item at the end. Any other
  // failure gives false.
  bool add(Variant vvntItem, StringView vsKey, bool vbOverride = false,
           bool vbIgnoreErrorIfAlreadyExists = false);

  // True when an item with the key can be read.
  bool itemExists(StringView vsKey) const;

  // Removes the item addressed by position or key and adds vvntValue at the end under the same
  // key, so the item moves to the last position. False, with nothing changed, when there is no
  // such item or the address is a position (a position is not a key to add the value under).
  bool setNewValueForItem(const Variant& vvntIndexKey, Variant vvntValue);

  // Removes the item addressed by position or key; false on any failure.
  bool remove(const Variant& vvntIndexKey);

  // Removes every item, last first.
  void removeAll();

 protected:
  CollectionRules() = default;

  // The item addressed by position or key. A missing item gives Empty, or when `raise` is set
  // raises in style A under classId and operation: CCEC_InvalidIndex for a position outside
  // 1 to count, CCEC_ItemNotFound for a key no item has. An address that is neither a text nor a
  // number raises its conversion error (13, 94, 6) whatever `raise` says.
  Variant itemOrEmpty(const Variant& vvntIndexKey, bool raise, StringView classId,
                      StringView operation) const;

  const KeyedCollection& items() const { return items_; }

 private:
  KeyedCollection items_;
};

}  // namespace ravelin::detail
