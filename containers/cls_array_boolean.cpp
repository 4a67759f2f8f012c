#include <cstdint>
#include <ravelin/containers/cls_array_boolean.hpp>
#include <ravelin/containers/internal/allocate_space_member.hpp>
#include <ravelin/frame/class_builder.hpp>

namespace ravelin {

bool clsArrayBoolean::addTo(int16_t viIndex, bool vbValue) {
  if (viIndex < 0) return false;
  if (viIndex >= getCount()) {
    // viIndex + 1 overflows an Integer for the last index: trapped like any other failure.
    if (viIndex == INT16_MAX) return false;
    try {
      storage().resize(static_cast<int16_t>(viIndex + 1));
    } catch (const AutomationError&) {
      return false;
    }
  }
  letItem(viIndex, vbValue);
  return true;
}

void clsArrayBoolean::allocateSpacePublic(int16_t viSize, bool vbPreserveValues,
                                          bool vbResetCountVariable) {
  storage().allocateSpacePublic(viSize, vbPreserveValues, vbResetCountVariable);
}

void clsArrayBoolean::clear(bool vbValue) {
  storage().clearWith(vbValue);
}

String clsArrayBoolean::getItemsAsList() const {
  return joinItems(5, [](String& out, bool value) { out += value ? u"True" : u"False"; });
}

ClassInfo clsArrayBoolean::describe() {
  ClassBuilder<clsArrayBoolean, Base> builder(kClassName,
                                              [](clsArrayBoolean& self) -> Base& { return self; });
  publishAllocateSpacePublic<int16_t>(builder, u"viSize");
  return builder.method(u"add", &clsArrayBoolean::add, {u"vbValue"})
      .method(u"setArraySizeWithEmptyValues", &clsArrayBoolean::setArraySizeWithEmptyValues,
              {u"viCount"})
      .get(u"item", &clsArrayBoolean::item, {u"viIndex"})
      .let(u"item", &clsArrayBoolean::letItem, {u"viIndex", u"vbValue"})
      .method(u"getCount", &clsArrayBoolean::getCount)
      .get(u"Count", &clsArrayBoolean::Count)
      .method(u"clear", &clsArrayBoolean::clear, {u"vbValue"})
      .method(u"getItemsAsList", &clsArrayBoolean::getItemsAsList)
      .method(u"removeItem", &clsArrayBoolean::removeItem, {u"viIndex"})
      .method(u"removeLastItem", &clsArrayBoolean::removeLastItem)
      .method(u"addTo", &clsArrayBoolean::addTo, {u"viIndex", u"vbValue"})
      .build();
}

}  // namespace ravelin
