// clsArrayLong: a growable, 0-based list of Long values with 16-bit indexes.
#pragma once

#include <cstdint>
#include <ravelin/base/text.hpp>
#include <ravelin/containers/detail/value_array.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/public_class.hpp>

namespace ravelin {

class clsArrayLong : public PublicClass<clsArrayLong>, private detail::ValueArray<int32_t, 2, 1> {
  using Base = detail::ValueArray<int32_t, 2, 1>;

 public:
  static constexpr StringView kClassName = u"clsArrayLong";

  // An empty array with 2 slots that grows one slot at a time.
  clsArrayLong() : Base(kClassName) {}

  // The member table late-bound callers see.
  static ClassInfo describe();

  // add, setArraySizeWithEmptyValues, clear, item (get and let), getCount, Count, removeItem,
  // removeLastItem and the refusing copy interface, as every value array has them.
  using Base::add;
  using Base::clear;
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

  // The values in decimal, joined by "," ("" when empty).
  String getItemsAsList() const;
};

}  // namespace ravelin
