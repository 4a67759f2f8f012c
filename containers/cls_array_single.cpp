#include <ravelin/containers/cls_array_single.hpp>
#include <ravelin/frame/class_builder.hpp>

namespace ravelin {

float clsArraySingle::item(int16_t viIndex) const {
  if (viIndex < 0 || viIndex > getCount()) {
    raiseStyleB(CCEC_InvalidIndex, detail::kOpGetItem, viIndex, getCount());
  }
  return storage().at(viIndex);
}

void clsArraySingle::letItem(int16_t viIndex, float value) {
  if (viIndex < 0 || viIndex > getCount()) {
    raiseStyleB(CCEC_InvalidIndex, detail::kOpSetItem, viIndex, getCount());
  }
  storage().at(viIndex) = value;
}

ClassInfo clsArraySingle::describe() {
  return ClassBuilder<clsArraySingle, Base>(kClassName,
                                            [](clsArraySingle& self) -> Base& { return self; })
      .method(u"add", &clsArraySingle::add, {u"vsngValue"})
      .method(u"setArraySizeWithEmptyValues", &clsArraySingle::setArraySizeWithEmptyValues,
              {u"viCount"})
      .get(u"item", &clsArraySingle::item, {u"viIndex"})
      .let(u"item", &clsArraySingle::letItem, {u"viIndex", u"vsngValue"})
      .method(u"getCount", &clsArraySingle::getCount)
      .get(u"Count", &clsArraySingle::Count)
      .build();
}

}  // namespace ravelin
