#include <ravelin/containers/cls_array_long.hpp>
#include <ravelin/containers/internal/decimal_list.hpp>

#include <ravelin/frame/class_builder.hpp>

namespace ravelin {

String clsArrayLong::getItemsAsList() const {
  return joinItems(7, [](String& out, auto value) { detail::appendDecimal(out, value); });
}

ClassInfo clsArrayLong::describe() {
  return ClassBuilder<clsArrayLong, Base>(kClassName,
                                          [](clsArrayLong& self) -> Base& { return self; })
      .method(u"add", &clsArrayLong::add, {u"vlValue"})
      .method(u"setArraySizeWithEmptyValues", &clsArrayLong::setArraySizeWithEmptyValues,
              {u"viCount"})
      .get(u"item", &clsArrayLong::item, {u"viIndex"})
      .let(u"item", &clsArrayLong::letItem, {u"viIndex", u"vlValue"})
      .method(u"getCount", &clsArrayLong::getCount)
      .get(u"Count", &clsArrayLong::Count)
      .method(u"clear", &clsArrayLong::clear)
      .method(u"getItemsAsList", &clsArrayLong::getItemsAsList)
      .method(u"removeItem", &clsArrayLong::removeItem, {u"viIndex"})
      .method(u"removeLastItem", &clsArrayLong::removeLastItem)
      .build();
}

}  // namespace ravelin
