// clsArraySingle: a growable, 0-based list of Single values with 16-bit indexes. It has no
// removal and no list text, reports bad indexes in the index-and-count style, and accepts the
// index one past the last element (the spare slot), as its callers rely on.
#pragma once

#include <ravelin/base/text.hpp>
#include <ravelin/containers/detail/value_array.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/public_class.hpp>

namespace ravelin {

class clsArraySingle : public PublicClass<clsArraySingle>, private detail::ValueArray<float, 2, 1> {
  using Base = detail::ValueArray<float, 2, 1>;

 public:
  static constexpr StringView kClassName = u"clsArraySingle";

  // An empty array with 2 slots that grows one slot at a time.
  clsArraySingle() : Base(kClassName) {}

  // The member table late-bound callers see.
  static ClassInfo describe();

  // add, setArraySizeWithEmptyValues, getCount, Count and the refusing copy interface, as every
  // value array has them.
  using Base::add;
  using Base::Count;
  using Base::getCount;
  using Base::IObject_copyObject;
  using Base::IObject_copyToObject;
  using Base::IObject_generateCopy;
  using Base::setArraySizeWithEmptyValues;
  using Base::slotCount;

  // The element at viIndex, 0 to count: index count reads the spare slot. Any other index
  // raises CCEC_InvalidIndex with source "Tarn.Quillmark.Common.getItem()" and description
  // "Index=<index> getCount()=<count>".
  float item(int16_t viIndex) const;

  // Replaces the element at viIndex, 0 to count: index count writes the spare slot and leaves
  // the count alone. Any other index raises as item does, with ".setItem()".
  void letItem(int16_t viIndex, float value);
};

}  // namespace ravelin
