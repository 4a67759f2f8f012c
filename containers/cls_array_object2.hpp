// clsArrayObject2: a growable, 0-based list of rows of two object references (item 0 and
// item 1) with 16-bit (Integer) indexes.
//
// Created with 20 slots, like its siblings clsArrayObject and clsArrayAnyObject, growing two at
// a time; setSlotIncrement changes the step (a step below 1 raises invalid procedure call, 5).
// The slot count is an Integer, so the array holds at most 32767 rows and an add past that
// answers false. Removals follow the value arrays: the freed row is emptied at once, releasing
// both references. A bad index raises CCEC_InvalidIndex in style A with the operation's own
// text: "clsArrayObject2.getItem0()", ".getItem1()", ".setItem0()", ".setItem1()". The copy
// interface refuses all four operations in style C (source "clsArrayObject2", description
// ".copyObject()" and its siblings).
#pragma once

#include <cstdint>
#include <ravelin/base/text.hpp>
#include <ravelin/containers/detail/slot_array.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/object_copy.hpp>
#include <ravelin/frame/public_class.hpp>

namespace ravelin {

namespace detail {
// One row of clsArrayObject2.
struct ObjectPair {
  ObjectRef item0;
  ObjectRef item1;
};
}  // namespace detail

class clsArrayObject2
    : public PublicClass<clsArrayObject2, UnsupportedCopyObject>,
      private detail::SlotArray<detail::ObjectPair, int16_t, detail::FreedSlots::Cleared> {
  using Base = detail::SlotArray<detail::ObjectPair, int16_t, detail::FreedSlots::Cleared>;

 public:
  static constexpr StringView kClassName = u"clsArrayObject2";

  // An empty array with 20 slots that grows two slots at a time.
  clsArrayObject2() : PublicClass(kClassName), Base(20, 2) {}

  // The member table late-bound callers see.
  static ClassInfo describe();

  using Base::getCount;
  using Base::setArraySizeWithEmptyValues;
  using Base::setSlotIncrement;
  using Base::slotCount;

  // The read-only Count property: the same number as getCount.
  int16_t Count() const { return getCount(); }

  // Appends a row; true, or false when the array cannot grow (it is then unchanged).
  bool add(ObjectRef voItem0, ObjectRef voItem1) {
    return tryAdd({std::move(voItem0), std::move(voItem1)});
  }

  // The first and second reference of row viIndex (0 to count - 1).
  ObjectRef getItem0(int16_t viIndex) const;
  ObjectRef getItem1(int16_t viIndex) const;
  // Replace them; the value comes first, the index second.
  void setItem0(ObjectRef voValue, int16_t viIndex);
  void setItem1(ObjectRef voValue, int16_t viIndex);

  // Removes one row keeping the order of the others; false on a bad index.
  bool removeItem(int16_t viIndex) { return remove(viIndex); }
  // Removes the last row; false when empty.
  bool removeLastItem() { return removeLast(); }
};

}  // namespace ravelin
