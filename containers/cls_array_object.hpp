// clsArrayObject: a growable, 0-based list of IObject references with 16-bit (Integer) indexes.
//
// Created with 20 slots, growing two at a time; the slot count is an Integer, so the array
// holds at most 32767 references and an add past that answers false. Removals follow the value
// arrays: the freed slot is emptied at once, releasing its reference, and removeAll empties every
// used slot. Its identifier text is "clsObjectArray", and its errors name the class by that text
// too, as the library's errors do wherever the identifier differs from the class name: a bad
// index on item raises CCEC_InvalidIndex in style A, "clsObjectArray.getItem()", and on setItem
// "clsObjectArray.setItem()". add answers a Boolean, as clsArrayString and the pair arrays do.
// The copy interface accepts every request and ignores it.
#pragma once

#include <cstdint>
#include <ravelin/base/text.hpp>
#include <ravelin/containers/detail/slot_array.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/object_copy.hpp>
#include <ravelin/frame/public_class.hpp>

namespace ravelin {

class clsArrayObject : public PublicClass<clsArrayObject, IgnoringCopyObject>,
                       private detail::SlotArray<IObjectRef, int16_t, detail::FreedSlots::Cleared> {
  using Base = detail::SlotArray<IObjectRef, int16_t, detail::FreedSlots::Cleared>;

 public:
  static constexpr StringView kClassName = u"clsArrayObject";
  // The identifier text, which the class's errors use as well.
  static constexpr StringView kClassId = u"clsObjectArray";

  // An empty array with 20 slots that grows two slots at a time.
  clsArrayObject() : PublicClass(kClassId), Base(20, 2) {}

  // The member table late-bound callers see.
  static ClassInfo describe();

  using Base::allocateSpacePublic;
  using Base::getCount;
  using Base::removeAll;
  using Base::setArraySizeWithEmptyValues;
  using Base::slotCount;

  // The read-only Count property: the same number as getCount.
  int16_t Count() const { return getCount(); }

  // Appends a reference (Nothing too); true, or false when the array cannot grow (it is then
  // unchanged).
  bool add(IObjectRef voValue) { return tryAdd(std::move(voValue)); }

  // The reference at viIndex (0 to count - 1).
  IObjectRef item(int16_t viIndex) const;
  // Replaces the reference at viIndex (0 to count - 1); the index comes first.
  void setItem(int16_t viIndex, IObjectRef voValue);

  // Removes one reference keeping the order of the others; false on a bad index.
  bool removeItem(int16_t viIndex) { return remove(viIndex); }
  // Removes the last reference; false when empty.
  bool removeLastItem() { return removeLast(); }
};

}  // namespace ravelin
