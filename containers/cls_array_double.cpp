#include <ravelin/containers/cls_array_double.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/locale.hpp>

#include <ravelin/frame/class_builder.hpp>

namespace ravelin {

String clsArrayDouble::getItemsAsList() const {
  const Locale& locale = currentLocale();
  return joinItems(16, [&locale](String& out, double value) {
    for (const char16_t unit : textOfDouble(value, locale))
      out += unit == u',' ? u'.' : unit;
  });
}

ClassInfo clsArrayDouble::describe() {
  return ClassBuilder<clsArrayDouble, Base>(kClassName,
                                            [](clsArrayDouble& self) -> Base& { return self; })
      .method(u"add", &clsArrayDouble::add, {u"vdblValue"})
      .method(u"setArraySizeWithEmptyValues", &clsArrayDouble::setArraySizeWithEmptyValues,
              {u"viCount"})
      .get(u"item", &clsArrayDouble::item, {u"viIndex"})
      .let(u"item", &clsArrayDouble::letItem, {u"viIndex", u"vdblValue"})
      .method(u"getCount", &clsArrayDouble::getCount)
      .get(u"Count", &clsArrayDouble::Count)
      .method(u"clear", &clsArrayDouble::clear)
      .method(u"getItemsAsList", &clsArrayDouble::getItemsAsList)
      .method(u"removeItem", &clsArrayDouble::removeItem, {u"viIndex"})
      .method(u"removeLastItem", &clsArrayDouble::removeLastItem)
      .build();
}

}  // namespace ravelin
