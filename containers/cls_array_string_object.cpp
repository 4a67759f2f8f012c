#include <ravelin/containers/internal/allocate_space_member.hpp>
#include <ravelin/containers/cls_array_string_object.hpp>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/error.hpp>
#include <utility>

namespace ravelin {
namespace {

constexpr StringView kOpItem = u".item()";
constexpr StringView kOpItemKey = u".itemKey()";
constexpr StringView kOpRemove = u".remove()";

String errorText(StringView operation) {
  String text(clsArrayStringObject::kErrorClassText);
  text += operation;
  return text;
}

}  // namespace

const clsArrayStringObject::Row& clsArrayStringObject::usedRow(int32_t index,
                                                               StringView operation) const {
  if (!rows_.isUsed(index)) raiseError(CCEC_InvalidIndex, String(), errorText(operation));
  return rows_.at(index);
}

clsArrayStringObject::Row& clsArrayStringObject::usedRow(int32_t index, StringView operation) {
  if (!rows_.isUsed(index)) raiseError(CCEC_InvalidIndex, String(), errorText(operation));
  return rows_.at(index);
}

ObjectRef clsArrayStringObject::item(int32_t vlIndex) const {
  return usedRow(vlIndex, kOpItem).value;
}

void clsArrayStringObject::setItem(int32_t vlIndex, ObjectRef voValue) {
  usedRow(vlIndex, kOpItem).value = std::move(voValue);
}

const String& clsArrayStringObject::ItemKey(int32_t vlIndex) const {
  return usedRow(vlIndex, kOpItem).key;
}

void clsArrayStringObject::letItemKey(int32_t vlIndex, String vsKey) {
  usedRow(vlIndex, kOpItemKey).key = std::move(vsKey);
}

int32_t clsArrayStringObject::ItemIndex(StringView vsKey) const {
  for (int32_t i = rows_.getCount() - 1; i >= 0; --i) {
    if (rows_.at(i).key == vsKey) return i;
  }
  return -1;
}

ObjectRef clsArrayStringObject::find(StringView vsKey) const {
  const int32_t index = ItemIndex(vsKey);
  return index < 0 ? nullptr : rows_.at(index).value;
}

bool clsArrayStringObject::removeWithKey(StringView vsKey, bool vbIgnoreNotFoundError,
                                         bool vbRaiseNotFoundError) {
  const int32_t index = ItemIndex(vsKey);
  if (index >= 0) return remove(index);
  if (vbRaiseNotFoundError && !vbIgnoreNotFoundError) {
    raiseStyleA(CCEC_ItemNotFound, kErrorClassText, kOpRemove);
  }
  return false;
}

ClassInfo clsArrayStringObject::describe() {
  using Self = clsArrayStringObject;
  ClassBuilder<Self> builder(kClassName);
  publishAllocateSpacePublic<int32_t>(builder, u"vlSize");
  return builder.method(u"add", &Self::add, {u"vsKey", u"voValue"})
      .get(u"item", &Self::item, {u"vlIndex"})
      .set(u"item", &Self::setItem, {u"vlIndex", u"voValue"})
      .get(u"ItemKey", &Self::ItemKey, {u"vlIndex"})
      .let(u"ItemKey", &Self::letItemKey, {u"vlIndex", u"vsKey"})
      .get(u"ItemIndex", [](Self& self, const String& key) { return self.ItemIndex(key); },
           {u"vsKey"})
      .method(u"find", [](Self& self, const String& key) { return self.find(key); }, {u"vsKey"})
      .method(u"removeWithKey",
              [](Self& self, const String& key, bool& ignoreNotFound, bool& raiseNotFound) {
                return self.removeWithKey(key, ignoreNotFound, raiseNotFound);
              },
              {u"vsKey", optional(u"vbIgnoreNotFoundError", false),
               optional(u"vbRaiseNotFoundError", false)})
      .method(u"remove", &Self::remove, {u"vlIndex"})
      .method(u"removeLast", &Self::removeLast)
      .method(u"removeAll", &Self::removeAll)
      .method(u"getCount", &Self::getCount)
      .build();
}

}  // namespace ravelin
