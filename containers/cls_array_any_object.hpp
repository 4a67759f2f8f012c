// clsArrayAnyObject: a growable, 0-based list of references to objects of any class, with 16-bit
// (Integer) indexes.
//
// Created with 20 slots, growing two at a time; the slot count is an Integer, so the array
// holds at most 32767 references and an add past that answers false. Removals follow the value
// arrays: the freed slot is emptied at once, releasing its reference, and removeAll empties every
// used slot. A bad index on item raises CCEC_InvalidIndex in style A,
// "clsArrayAnyObject.getItem()", and on setItem "clsArrayAnyObject.setItem()". add answers a
// Boolean, as clsArrayString and the pair arrays do. The copy interface accepts every request
// and ignores it.
#pragma once

#include <cstdint>
#include <ravelin/base/text.hpp>
#include <ravelin/containers/detail/slot_array.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/object_copy.hpp>
#include <ravelin/frame/public_class.hpp>

namespace ravelin {

class clsArrayAnyObject
    : public PublicClass<clsArrayAnyObject, IgnoringCopyObject>,
      private detail::SlotArray<ObjectRef, int16_t, detail::FreedSlots::Cleared> {
  using Base = detail::SlotArray<ObjectRef, int16_t, detail::FreedSlots::Cleared>;

 public:
  static constexpr StringView kClassName = u"clsArrayAnyObject";

  // An empty array with 20 slots that grows two slots at a time.
  clsArrayAnyObject() : PublicClass(kClassName), Base(20, 2) {}

  // The member table late-bound callers see.
  static ClassInfo describe();

  using Base::getCount;
  using Base::removeAll;
  using Base::setArraySizeWithEmptyValues;
  using Base::slotCount;

  // The read-only Count property: the same number as getCount.
  int16_t Count() const { return getCount(); }

  // Appends a reference (Nothing too); true, or false when the array cannot grow (it is then
  // unchanged).
  bool add(ObjectRef voValue) { return tryAdd(std::move(voValue)); }

  // The reference at viIndex (0 to count - 1).
  ObjectRef item(int16_t viIndex) const;
  // Replaces the reference at viIndex (0 to count - 1); the index comes first.
  void setItem(int16_t viIndex, ObjectRef voValue);

  // Removes one reference keeping the order of the others; false on a bad index.
  bool removeItem(int16_t viIndex) { return remove(viIndex); }
  // Removes the last reference; false when empty.
  bool removeLastItem() { return removeLast(); }
};

}  // namespace ravelin
