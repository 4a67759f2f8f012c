#include <ravelin/containers/cls_array_any_object.hpp>
#include <ravelin/frame/class_builder.hpp>
#include <utility>

namespace ravelin {

ObjectRef clsArrayAnyObject::item(int16_t viIndex) const {
  if (!isUsed(viIndex)) raiseStyleA(CCEC_InvalidIndex, kClassName, u".getItem()");
  return at(viIndex);
}

void clsArrayAnyObject::setItem(int16_t viIndex, ObjectRef voValue) {
  if (!isUsed(viIndex)) raiseStyleA(CCEC_InvalidIndex, kClassName, u".setItem()");
  at(viIndex) = std::move(voValue);
}

ClassInfo clsArrayAnyObject::describe() {
  ClassBuilder<clsArrayAnyObject, Base> builder(
      kClassName, [](clsArrayAnyObject& self) -> Base& { return self; });
  return publishCopyInterface(builder)
      .method(u"add", &clsArrayAnyObject::add, {u"voValue"})
      .method(u"setArraySizeWithEmptyValues", &clsArrayAnyObject::setArraySizeWithEmptyValues,
              {u"viCount"})
      .get(u"item", &clsArrayAnyObject::item, {u"viIndex"})
      .method(u"removeItem", &clsArrayAnyObject::removeItem, {u"viIndex"})
      .method(u"removeLastItem", &clsArrayAnyObject::removeLastItem)
      .method(u"removeAll", &clsArrayAnyObject::removeAll)
      .method(u"setItem", &clsArrayAnyObject::setItem, {u"viIndex", u"voValue"})
      .method(u"getCount", &clsArrayAnyObject::getCount)
      .get(u"Count", &clsArrayAnyObject::Count)
      .build();
}

}  // namespace ravelin
