#include <ravelin/containers/internal/allocate_space_member.hpp>
#include <ravelin/containers/cls_larray_object.hpp>
#include <ravelin/frame/class_builder.hpp>
#include <utility>

namespace ravelin {
namespace {

[[noreturn]] void raiseBadIndex() {
  raiseError(CCEC_InvalidIndex, String(), u"clsLArrayObject.item()");
}

}  // namespace

bool clsLArrayObject::add(ObjectRef voValue) {
  Base::add(std::move(voValue));
  return true;
}

ObjectRef clsLArrayObject::item(int32_t vlIndex) const {
  if (!isUsed(vlIndex)) raiseBadIndex();
  return at(vlIndex);
}

void clsLArrayObject::setItem(int32_t vlIndex, ObjectRef voValue) {
  if (!isUsed(vlIndex)) raiseBadIndex();
  at(vlIndex) = std::move(voValue);
}

ClassInfo clsLArrayObject::describe() {
  ClassBuilder<clsLArrayObject, Base> builder(kClassName,
                                              [](clsLArrayObject& self) -> Base& { return self; });
  publishCopyInterface(builder);
  publishAllocateSpacePublic<int32_t>(builder, u"vlSize");
  return builder.method(u"add", &clsLArrayObject::add, {u"voValue"})
      .get(u"item", &clsLArrayObject::item, {u"vlIndex"})
      .set(u"item", &clsLArrayObject::setItem, {u"vlIndex", u"voValue"})
      .method(u"remove", &clsLArrayObject::remove, {u"vlIndex"})
      .method(u"removeLast", &clsLArrayObject::removeLast)
      .method(u"removeAll", &clsLArrayObject::removeAll)
      .method(u"getCount", &clsLArrayObject::getCount)
      .build();
}

}  // namespace ravelin
