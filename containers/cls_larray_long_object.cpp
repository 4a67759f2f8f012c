#include <ravelin/containers/internal/allocate_space_member.hpp>
#include <ravelin/containers/cls_larray_long_object.hpp>
#include <ravelin/frame/class_builder.hpp>
#include <utility>

namespace ravelin {
namespace {

[[noreturn]] void raiseBadIndex(StringView description) {
  raiseError(CCEC_InvalidIndex, String(), String(description));
}

}  // namespace

bool clsLArrayLongObject::add(int32_t vlKey, ObjectRef voValue) {
  Base::add({vlKey, std::move(voValue)});
  return true;
}

int32_t clsLArrayLongObject::addSortAscByKey(int32_t vlKey, ObjectRef voValue) {
  int32_t index = getCount();
  while (index > 0 && at(index - 1).key > vlKey)
    --index;
  insert(index, {vlKey, std::move(voValue)});
  return index;
}

ObjectRef clsLArrayLongObject::item(int32_t vlIndex) const {
  if (!isUsed(vlIndex)) raiseBadIndex(u"clsLArrayLongObject.item()");
  return at(vlIndex).value;
}

void clsLArrayLongObject::setItem(int32_t vlIndex, ObjectRef voValue) {
  if (!isUsed(vlIndex)) raiseBadIndex(u"clsLArrayLongObject.item()");
  at(vlIndex).value = std::move(voValue);
}

int32_t clsLArrayLongObject::ItemKey(int32_t vlIndex) const {
  if (!isUsed(vlIndex)) raiseBadIndex(u"clsLArrayLongObject.item()");
  return at(vlIndex).key;
}

void clsLArrayLongObject::letItemKey(int32_t vlIndex, int32_t vlKey) {
  if (!isUsed(vlIndex)) raiseBadIndex(u"clsLArrayLongObject.itemKey()");
  at(vlIndex).key = vlKey;
}

int32_t clsLArrayLongObject::ItemIndex(int32_t vlKey) const {
  for (int32_t i = getCount() - 1; i >= 0; --i) {
    if (at(i).key == vlKey) return i;
  }
  return -1;
}

ObjectRef clsLArrayLongObject::find(int32_t vlKey) const {
  const int32_t index = ItemIndex(vlKey);
  return index < 0 ? nullptr : at(index).value;
}

bool clsLArrayLongObject::removeWithKey(int32_t vlKey, bool vbIgnoreNotFoundError,
                                        bool vbRaiseNotFoundError) {
  const int32_t index = ItemIndex(vlKey);
  if (index >= 0) return remove(index);
  if (vbRaiseNotFoundError && !vbIgnoreNotFoundError) {
    raiseStyleA(CCEC_ItemNotFound, kClassName, u".remove()");
  }
  return false;
}

ClassInfo clsLArrayLongObject::describe() {
  ClassBuilder<clsLArrayLongObject, Base> builder(
      kClassName, [](clsLArrayLongObject& self) -> Base& { return self; });
  publishCopyInterface(builder);
  publishAllocateSpacePublic<int32_t>(builder, u"vlSize");
  return builder.method(u"add", &clsLArrayLongObject::add, {u"vlKey", u"voValue"})
      .method(u"addSortAscByKey", &clsLArrayLongObject::addSortAscByKey, {u"vlKey", u"voValue"})
      .get(u"item", &clsLArrayLongObject::item, {u"vlIndex"})
      .set(u"item", &clsLArrayLongObject::setItem, {u"vlIndex", u"voValue"})
      .get(u"ItemKey", &clsLArrayLongObject::ItemKey, {u"vlIndex"})
      .let(u"ItemKey", &clsLArrayLongObject::letItemKey, {u"vlIndex", u"vlKey"})
      .get(u"ItemIndex", &clsLArrayLongObject::ItemIndex, {u"vlKey"})
      .method(u"find", &clsLArrayLongObject::find, {u"vlKey"})
      .method(
          u"removeWithKey",
          [](clsLArrayLongObject& self, int32_t key, bool& ignoreNotFound, bool& raiseNotFound) {
            return self.removeWithKey(key, ignoreNotFound, raiseNotFound);
          },
          {u"vlKey", optional(u"vbIgnoreNotFoundError", false),
           optional(u"vbRaiseNotFoundError", false)})
      .method(u"remove", &clsLArrayLongObject::remove, {u"vlIndex"})
      .method(u"removeLast", &clsLArrayLongObject::removeLast)
      .method(u"removeAll", &clsLArrayLongObject::removeAll)
      .method(u"getCount", &clsLArrayLongObject::getCount)
      .build();
}

}  // namespace ravelin
