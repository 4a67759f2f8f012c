// clsLArrayObject: a growable, 0-based list of object references with Long indexes.
//
// Created with 500 slots, growing two at a time. A removal only lowers the count: the freed slot
// keeps its reference, so a removed object stays alive until the slot is overwritten by a later
// add, the storage is rebuilt (allocateSpacePublic) or the array is destroyed. A bad index on
// item raises CCEC_InvalidIndex with an empty source and the whole text, "clsLArrayObject.item()",
// in the description. The copy interface refuses to copy (style A) and answers no parameter.
#pragma once

#include <cstdint>
#include <ravelin/base/text.hpp>
#include <ravelin/containers/detail/slot_array.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/object_copy.hpp>
#include <ravelin/frame/public_class.hpp>

namespace ravelin {

class clsLArrayObject : public PublicClass<clsLArrayObject, RefusingCopyObject>,
                        private detail::SlotArray<ObjectRef, int32_t, detail::FreedSlots::Kept> {
  using Base = detail::SlotArray<ObjectRef, int32_t, detail::FreedSlots::Kept>;

 public:
  static constexpr StringView kClassName = u"clsLArrayObject";

  // An empty array with 500 slots that grows two slots at a time.
  clsLArrayObject() : PublicClass(kClassName), Base(500, 2) {}

  // The member table late-bound callers see.
  static ClassInfo describe();

  using Base::allocateSpacePublic;
  using Base::getCount;
  using Base::remove;
  using Base::removeAll;
  using Base::removeLast;
  using Base::slotCount;

  // Appends a reference (Nothing too), growing when full; true. A growth past the storage limit
  // raises out of memory (7).
  bool add(ObjectRef voValue);

  // The reference at vlIndex (0 to count - 1).
  ObjectRef item(int32_t vlIndex) const;
  // Replaces the reference at vlIndex (0 to count - 1).
  void setItem(int32_t vlIndex, ObjectRef voValue);
};

}  // namespace ravelin
