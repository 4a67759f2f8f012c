// clsLArrayLongObject: a growable, 0-based list of (Long key, object) pairs with Long indexes.
//
// Created with 500 slots, growing two at a time. A removal only lowers the count; the freed slot
// keeps its reference, so a removed object stays alive until the slot is overwritten, the
// storage is rebuilt or the array is destroyed. Keys need not be unique. The copy interface
// refuses to copy (style A) and answers no parameter.
//
// - A bad index on item (get and set) and on ItemKey get raises CCEC_InvalidIndex with an empty
//   source and the description "clsLArrayLongObject.item()"; ItemKey let reports
//   "clsLArrayLongObject.itemKey()". remove with a bad index answers false.
// - addSortAscByKey inserts after every element whose key is less than or equal to the new key:
//   used alone it keeps the array sorted ascending by key and stable.
// - ItemIndex, find and removeWithKey take the last element whose key equals the key, as
//   clsArrayStringObject and the keyed lookups of the pair arrays do; so removeWithKey(k)
//   removes the very object find(k) returns, at the index ItemIndex(k) gives. After
//   addSortAscByKey that is the latest of the equal keys.
// - removeWithKey with no such element raises CCEC_ItemNotFound (source "Tarn.Quillmark.Common",
//   description "clsLArrayLongObject.remove()") when vbRaiseNotFoundError is true and
//   vbIgnoreNotFoundError is false; otherwise it answers false. Both flags default to false.
#pragma once

#include <cstdint>
#include <ravelin/base/text.hpp>
#include <ravelin/containers/detail/slot_array.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/object_copy.hpp>
#include <ravelin/frame/public_class.hpp>

namespace ravelin {

namespace detail {
// One element of clsLArrayLongObject.
struct KeyedObject {
  int32_t key = 0;
  ObjectRef value;
};
}  // namespace detail

class clsLArrayLongObject
    : public PublicClass<clsLArrayLongObject, RefusingCopyObject>,
      private detail::SlotArray<detail::KeyedObject, int32_t, detail::FreedSlots::Kept> {
  using Base = detail::SlotArray<detail::KeyedObject, int32_t, detail::FreedSlots::Kept>;

 public:
  static constexpr StringView kClassName = u"clsLArrayLongObject";

  // An empty array with 500 slots that grows two slots at a time.
  clsLArrayLongObject() : PublicClass(kClassName), Base(500, 2) {}

  // The member table late-bound callers see.
  static ClassInfo describe();

  using Base::allocateSpacePublic;
  using Base::getCount;
  using Base::remove;
  using Base::removeAll;
  using Base::removeLast;
  using Base::slotCount;

  // Appends a pair, growing when full; true.
  bool add(int32_t vlKey, ObjectRef voValue);

  // Inserts a pair after the last element whose key is at most vlKey (at 0 when every key is
  // greater), growing when full; returns the index it took.
  int32_t addSortAscByKey(int32_t vlKey, ObjectRef voValue);

  // The object and the key at vlIndex (0 to count - 1), read and replaced.
  ObjectRef item(int32_t vlIndex) const;
  void setItem(int32_t vlIndex, ObjectRef voValue);
  int32_t ItemKey(int32_t vlIndex) const;
  void letItemKey(int32_t vlIndex, int32_t vlKey);

  // The index of the last element with key vlKey, or -1.
  int32_t ItemIndex(int32_t vlKey) const;
  // The object of the last element with key vlKey, or Nothing.
  ObjectRef find(int32_t vlKey) const;
  // Removes the last element with key vlKey; see the header comment for the flags.
  bool removeWithKey(int32_t vlKey, bool vbIgnoreNotFoundError = false,
                     bool vbRaiseNotFoundError = false);
};

}  // namespace ravelin
