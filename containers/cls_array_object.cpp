#include <ravelin/containers/cls_array_object.hpp>
#include <ravelin/frame/class_builder.hpp>
#include <utility>

namespace ravelin {

IObjectRef clsArrayObject::item(int16_t viIndex) const {
  if (!isUsed(viIndex)) raiseStyleA(CCEC_InvalidIndex, kClassId, u".getItem()");
  return at(viIndex);
}

void clsArrayObject::setItem(int16_t viIndex, IObjectRef voValue) {
  if (!isUsed(viIndex)) raiseStyleA(CCEC_InvalidIndex, kClassId, u".setItem()");
  at(viIndex) = std::move(voValue);
}

ClassInfo clsArrayObject::describe() {
  ClassBuilder<clsArrayObject> builder(kClassName);
  return publishCopyInterface(builder)
      .method(u"add", &clsArrayObject::add, {u"voValue"})
      .method(u"setArraySizeWithEmptyValues", &clsArrayObject::setArraySizeWithEmptyValues,
              {u"viCount"})
      .method(u"allocateSpacePublic",
              [](clsArrayObject& self, int16_t size, bool& preserveValues, bool& resetCount) {
                self.allocateSpacePublic(size, preserveValues, resetCount);
              },
              {u"viSize", optional(u"vbPreserveValues", true),
               optional(u"vbResetCountVariable", false)})
      .get(u"item", &clsArrayObject::item, {u"viIndex"})
      .method(u"removeItem", &clsArrayObject::removeItem, {u"viIndex"})
      .method(u"removeLastItem", &clsArrayObject::removeLastItem)
      .method(u"removeAll", &clsArrayObject::removeAll)
      .method(u"setItem", &clsArrayObject::setItem, {u"viIndex", u"voValue"})
      .method(u"getCount", &clsArrayObject::getCount)
      .get(u"Count", &clsArrayObject::Count)
      .build();
}

}  // namespace ravelin
