#include <ravelin/containers/cls_array_object2.hpp>
#include <ravelin/frame/class_builder.hpp>
#include <utility>

namespace ravelin {

ObjectRef clsArrayObject2::getItem0(int16_t viIndex) const {
  if (!isUsed(viIndex)) raiseStyleA(CCEC_InvalidIndex, kClassName, u".getItem0()");
  return at(viIndex).item0;
}

ObjectRef clsArrayObject2::getItem1(int16_t viIndex) const {
  if (!isUsed(viIndex)) raiseStyleA(CCEC_InvalidIndex, kClassName, u".getItem1()");
  return at(viIndex).item1;
}

void clsArrayObject2::setItem0(ObjectRef voValue, int16_t viIndex) {
  if (!isUsed(viIndex)) raiseStyleA(CCEC_InvalidIndex, kClassName, u".setItem0()");
  at(viIndex).item0 = std::move(voValue);
}

void clsArrayObject2::setItem1(ObjectRef voValue, int16_t viIndex) {
  if (!isUsed(viIndex)) raiseStyleA(CCEC_InvalidIndex, kClassName, u".setItem1()");
  at(viIndex).item1 = std::move(voValue);
}

ClassInfo clsArrayObject2::describe() {
  ClassBuilder<clsArrayObject2, Base> builder(kClassName,
                                              [](clsArrayObject2& self) -> Base& { return self; });
  return publishCopyInterface(builder)
      .method(u"add", &clsArrayObject2::add, {u"voItem0", u"voItem1"})
      .method(u"setArraySizeWithEmptyValues", &clsArrayObject2::setArraySizeWithEmptyValues,
              {u"viCount"})
      .method(u"getItem0", &clsArrayObject2::getItem0, {u"viIndex"})
      .method(u"getItem1", &clsArrayObject2::getItem1, {u"viIndex"})
      .method(u"removeItem", &clsArrayObject2::removeItem, {u"viIndex"})
      .method(u"removeLastItem", &clsArrayObject2::removeLastItem)
      .method(u"setItem0", &clsArrayObject2::setItem0, {u"voValue", u"viIndex"})
      .method(u"setItem1", &clsArrayObject2::setItem1, {u"voValue", u"viIndex"})
      .method(u"getCount", &clsArrayObject2::getCount)
      .get(u"Count", &clsArrayObject2::Count)
      .method(u"setSlotIncrement", &clsArrayObject2::setSlotIncrement, {u"viValue"})
      .build();
}

}  // namespace ravelin
