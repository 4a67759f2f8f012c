// clsLArrayDouble: a growable, 0-based list of Double values with Long indexes.
//
// Created with 10 slots, growing two at a time. A removal only lowers the count; the freed slot
// keeps its value until it is overwritten or the storage is rebuilt. A bad index on item raises
// CCEC_InvalidIndex with an empty source and the whole text in the description:
// "clsLArrayDouble.item()" for a read, "clsLArrayDouble.item.let()" for an assignment. The copy
// interface refuses to copy (style A) and answers no parameter.
#pragma once

#include <cstdint>
#include <ravelin/base/text.hpp>
#include <ravelin/containers/detail/slot_array.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/object_copy.hpp>
#include <ravelin/frame/public_class.hpp>

namespace ravelin {

class clsLArrayDouble : public PublicClass<clsLArrayDouble, RefusingCopyObject>,
                        private detail::SlotArray<double, int32_t, detail::FreedSlots::Kept> {
  using Base = detail::SlotArray<double, int32_t, detail::FreedSlots::Kept>;

 public:
  static constexpr StringView kClassName = u"clsLArrayDouble";

  // An empty array with 10 slots that grows two slots at a time.
  clsLArrayDouble() : PublicClass(kClassName), Base(10, 2) {}

  // The member table late-bound callers see.
  static ClassInfo describe();

  using Base::allocateSpacePublic;
  using Base::getCount;
  using Base::remove;
  using Base::removeAll;
  using Base::removeLast;
  using Base::slotCount;

  // Appends a value, growing when full; true.
  bool add(double vdValue) {
    Base::add(vdValue);
    return true;
  }

  // The value at vlIndex (0 to count - 1).
  double item(int32_t vlIndex) const;
  // Replaces the value at vlIndex (0 to count - 1).
  void letItem(int32_t vlIndex, double vdValue);
};

}  // namespace ravelin
