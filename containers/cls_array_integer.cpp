#include <algorithm>
#include <ravelin/containers/cls_array_integer.hpp>
#include <ravelin/containers/internal/decimal_list.hpp>
#include <ravelin/frame/class_builder.hpp>

namespace ravelin {

String clsArrayInteger::getItemsAsList() const {
  return joinItems(4, [](String& out, auto value) { detail::appendDecimal(out, value); });
}

void clsArrayInteger::orderValuesAsc() {
  // Equal Integers cannot be told apart, so any ascending sort gives the same result as the
  // exchange sort the callers know.
  std::sort(&storage().at(0), &storage().at(0) + getCount());
}

ClassInfo clsArrayInteger::describe() {
  return ClassBuilder<clsArrayInteger, Base>(kClassName,
                                             [](clsArrayInteger& self) -> Base& { return self; })
      .method(u"add", &clsArrayInteger::add, {u"viValue"})
      .method(u"setArraySizeWithEmptyValues", &clsArrayInteger::setArraySizeWithEmptyValues,
              {u"viCount"})
      .get(u"item", &clsArrayInteger::item, {u"viIndex"})
      .let(u"item", &clsArrayInteger::letItem, {u"viIndex", u"viValue"})
      .method(u"getCount", &clsArrayInteger::getCount)
      .get(u"Count", &clsArrayInteger::Count)
      .method(u"clear", &clsArrayInteger::clear)
      .method(u"getItemsAsList", &clsArrayInteger::getItemsAsList)
      .method(u"removeItem", &clsArrayInteger::removeItem, {u"viIndex"})
      .method(u"removeLastItem", &clsArrayInteger::removeLastItem)
      .method(u"orderValuesAsc", &clsArrayInteger::orderValuesAsc)
      .build();
}

}  // namespace ravelin
