#include <ravelin/containers/internal/allocate_space_member.hpp>
#include <ravelin/containers/cls_larray_double.hpp>
#include <ravelin/frame/class_builder.hpp>

namespace ravelin {

double clsLArrayDouble::item(int32_t vlIndex) const {
  if (!isUsed(vlIndex)) raiseError(CCEC_InvalidIndex, String(), u"clsLArrayDouble.item()");
  return at(vlIndex);
}

void clsLArrayDouble::letItem(int32_t vlIndex, double vdValue) {
  if (!isUsed(vlIndex)) raiseError(CCEC_InvalidIndex, String(), u"clsLArrayDouble.item.let()");
  at(vlIndex) = vdValue;
}

ClassInfo clsLArrayDouble::describe() {
  ClassBuilder<clsLArrayDouble, Base> builder(kClassName,
                                              [](clsLArrayDouble& self) -> Base& { return self; });
  publishCopyInterface(builder);
  publishAllocateSpacePublic<int32_t>(builder, u"vlSize");
  return builder.method(u"add", &clsLArrayDouble::add, {u"vdValue"})
      .get(u"item", &clsLArrayDouble::item, {u"vlIndex"})
      .let(u"item", &clsLArrayDouble::letItem, {u"vlIndex", u"vdValue"})
      .method(u"remove", &clsLArrayDouble::remove, {u"vlIndex"})
      .method(u"removeLast", &clsLArrayDouble::removeLast)
      .method(u"removeAll", &clsLArrayDouble::removeAll)
      .method(u"getCount", &clsLArrayDouble::getCount)
      .build();
}

}  // namespace ravelin
