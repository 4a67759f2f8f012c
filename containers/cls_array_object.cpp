#include <ravelin/containers/internal/allocate_space_member.hpp>
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
  ClassBuilder<clsArrayObject, Base> builder(kClassName,
                                             [](clsArrayObject& self) -> Base& { return self; });
  publishCopyInterface(builder);
  publishAllocateSpacePublic<int16_t>(builder, u"viSize");
  return builder.method(u"add", &clsArrayObject::add, {u"voValue"})
      .method(u"setArraySizeWithEmptyValues", &clsArrayObject::setArraySizeWithEmptyValues,
              {u"viCount"})
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
