// clsArrayBoolean: a growable, 0-based list of Boolean values with 16-bit indexes, which can
// also be extended to a given index (addTo) and have its storage sized directly.
#pragma once

#include <cstdint>
#include <ravelin/base/text.hpp>
#include <ravelin/containers/detail/value_array.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/public_class.hpp>

namespace ravelin {

class clsArrayBoolean : public PublicClass<clsArrayBoolean>,
                        private detail::ValueArray<bool, 2, 1> {
  using Base = detail::ValueArray<bool, 2, 1>;

 public:
  static constexpr StringView kClassName = u"clsArrayBoolean";

  // An empty array with 2 slots that grows one slot at a time.
  clsArrayBoolean() : Base(kClassName) {}

  // The member table late-bound callers see.
  static ClassInfo describe();

  // add, setArraySizeWithEmptyValues, item (get and let), getCount, Count, removeItem,
  // removeLastItem and the refusing copy interface, as every value array has them.
  using Base::add;
  using Base::Count;
  using Base::getCount;
  using Base::IObject_copyObject;
  using Base::IObject_copyToObject;
  using Base::IObject_generateCopy;
  using Base::item;
  using Base::letItem;
  using Base::removeItem;
  using Base::removeLastItem;
  using Base::setArraySizeWithEmptyValues;
  using Base::slotCount;

  // Sets element viIndex to vbValue, first extending the array to viIndex + 1 elements when
  // viIndex is at or past the count (elements in between keep whatever the storage holds).
  // False for a negative index or when the array cannot be extended; no error is left.
  bool addTo(int16_t viIndex, bool vbValue);

  // Rebuilds the storage for viSize slots, keeping the values when vbPreserveValues. The count
  // becomes 0 when vbResetCountVariable, and is otherwise only lowered to viSize, never raised.
  // A negative size raises subscript out of range (9).
  void allocateSpacePublic(int16_t viSize, bool vbPreserveValues = true,
                           bool vbResetCountVariable = false);

  // Sets each used element to vbValue, then count = 0. The filled values stay in the storage
  // and reappear when addTo later extends the count over them.
  void clear(bool vbValue);

  // The values as "True" and "False", joined by "," ("" when empty).
  String getItemsAsList() const;
};

}  // namespace ravelin
