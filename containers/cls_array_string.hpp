// clsArrayString: a growable, 0-based list of texts with 16-bit indexes, with search by exact
// text. Its copy interface accepts every request and ignores it (no copy is ever made).
#pragma once

#include <cstdint>
#include <ravelin/base/text.hpp>
#include <ravelin/containers/detail/value_array.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/object_copy.hpp>
#include <ravelin/frame/public_class.hpp>
#include <ravelin/frame/variant.hpp>
#include <utility>

namespace ravelin {

class clsArrayString : public PublicClass<clsArrayString, IgnoringCopyObject>,
                       private detail::ValueArray<String, 4, 2> {
  using Base = detail::ValueArray<String, 4, 2>;

 public:
  static constexpr StringView kClassName = u"clsArrayString";

  // An empty array with 4 slots that grows two slots at a time.
  clsArrayString() : PublicClass(kClassName), Base(kClassName) {}

  // The member table late-bound callers see.
  static ClassInfo describe();

  // setArraySizeWithEmptyValues, clear, item (get and let), getCount, Count, removeItem and
  // removeLastItem, as every value array has them.
  using Base::clear;
  using Base::Count;
  using Base::getCount;
  using Base::item;
  using Base::letItem;
  using Base::removeItem;
  using Base::removeLastItem;
  using Base::setArraySizeWithEmptyValues;
  using Base::slotCount;

  // Appends a text; true, or false when the array cannot grow (it is then unchanged).
  bool add(String vsValue) { return Base::add(std::move(vsValue)) >= 0; }

  // True when an element equals vsKey exactly (case-sensitive).
  bool find(StringView vsKey) const;

  // Removes the last element equal to vsKey exactly; false when there is none. Only one
  // element is removed per call.
  bool RemoveItemWithKey(StringView vsKey);

  // Each text wrapped in vsDelimiterChar, joined by ",". Nothing inside the texts is escaped.
  String getItemsAsList(StringView vsDelimiterChar = u"") const;
};

}  // namespace ravelin
