#include <algorithm>
#include <ravelin/containers/cls_array_integer.hpp>
#include <ravelin/containers/decimal_list.hpp>

namespace ravelin {

String clsArrayInteger::getItemsAsList() const {
  return joinItems(4, [](String& out, auto value) { detail::appendDecimal(out, value); });
}

void clsArrayInteger::orderValuesAsc() {
  // Equal Integers cannot be told apart, so any ascending sort gives the same result as the
  // exchange sort the callers know.
  std::sort(&slot(0), &slot(0) + getCount());
}

}  // namespace ravelin
