#include <ravelin/containers/cls_array_long.hpp>
#include <ravelin/containers/decimal_list.hpp>

namespace ravelin {

String clsArrayLong::getItemsAsList() const {
  return joinItems(7, [](String& out, auto value) { detail::appendDecimal(out, value); });
}

}  // namespace ravelin
