// clsLArrayDouble2: a growable, 0-based list of rows of two Double values (Item1, Item2) with
// Long indexes.
//
// Created with 500 slots, growing two at a time. A removal only lowers the count; the freed row
// keeps its values until it is overwritten or the storage is rebuilt. A bad index on Item1 or
// Item2 raises CCEC_InvalidIndex with an empty source and the whole text in the description,
// kept as the library has always reported it even where it names another property:
// Item1 get "clsLArrayDouble2.item()", Item1 let "clsLArrayDouble2.itemKey()", Item2 get
// "clsLArrayDouble2.item2()", Item2 let "clsLArrayDouble2.item()". The copy interface refuses to
// copy (style A) and answers no parameter.
//
// orderValues (vlOptions) sorts the rows ascending, each row moving whole: vlOptions 2 orders by
// Item2, 0 (the default) and 1 by Item1. Rows with equal values keep their order, so sorting by
// one column and then the other gives a two-level order. Any other option raises
// CCEC_InvalidParameter (style A, "clsLArrayDouble2.orderValues()") and leaves the rows as they
// were.
#pragma once

#include <cstdint>
#include <ravelin/base/text.hpp>
#include <ravelin/containers/detail/slot_array.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/object_copy.hpp>
#include <ravelin/frame/public_class.hpp>

namespace ravelin {

namespace detail {
// One row of clsLArrayDouble2.
struct DoublePair {
  double value1 = 0;
  double value2 = 0;
};
}  // namespace detail

class clsLArrayDouble2
    : public PublicClass<clsLArrayDouble2, RefusingCopyObject>,
      private detail::SlotArray<detail::DoublePair, int32_t, detail::FreedSlots::Kept> {
  using Base = detail::SlotArray<detail::DoublePair, int32_t, detail::FreedSlots::Kept>;

 public:
  static constexpr StringView kClassName = u"clsLArrayDouble2";

  // An empty array with 500 slots that grows two slots at a time.
  clsLArrayDouble2() : PublicClass(kClassName), Base(500, 2) {}

  // The member table late-bound callers see.
  static ClassInfo describe();

  using Base::allocateSpacePublic;
  using Base::getCount;
  using Base::remove;
  using Base::removeAll;
  using Base::removeLast;
  using Base::slotCount;

  // Appends a row, growing when full; true.
  bool add(double vdValue1, double vdValue2) {
    Base::add({vdValue1, vdValue2});
    return true;
  }

  // The first and second value of row vlIndex (0 to count - 1), read and replaced.
  double Item1(int32_t vlIndex) const;
  void letItem1(int32_t vlIndex, double vdValue);
  double Item2(int32_t vlIndex) const;
  void letItem2(int32_t vlIndex, double vdValue);

  // Sorts the rows ascending by Item1 (vlOptions 0 or 1) or Item2 (vlOptions 2), stable.
  void orderValues(int32_t vlOptions = 0);
};

}  // namespace ravelin
