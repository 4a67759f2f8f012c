#include <algorithm>
#include <new>
#include <ravelin/containers/cls_array_string_object.hpp>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/error.hpp>
#include <stdexcept>
#include <utility>

namespace ravelin {
namespace {

constexpr int32_t kInitialSlots = 500;
constexpr StringView kOpItem = u".item()";
constexpr StringView kOpItemKey = u".itemKey()";
constexpr StringView kOpRemove = u".remove()";

String errorText(StringView operation) {
  String text(clsArrayStringObject::kErrorClassText);
  text += operation;
  return text;
}

}  // namespace

clsArrayStringObject::clsArrayStringObject()
    : rows_(static_cast<std::size_t>(kInitialSlots) + 1), slotCount_(kInitialSlots) {}

const clsArrayStringObject::Row& clsArrayStringObject::usedRow(int32_t index,
                                                               StringView operation) const {
  if (index < 0 || index >= count_) raiseError(CCEC_InvalidIndex, String(), errorText(operation));
  return rows_[static_cast<std::size_t>(index)];
}

clsArrayStringObject::Row& clsArrayStringObject::usedRow(int32_t index, StringView operation) {
  if (index < 0 || index >= count_) raiseError(CCEC_InvalidIndex, String(), errorText(operation));
  return rows_[static_cast<std::size_t>(index)];
}

bool clsArrayStringObject::add(String vsKey, ObjectRef voValue) {
  if (count_ == slotCount_) {
    const int64_t grown = int64_t{slotCount_} + slotIncrement_;
    if (grown > INT32_MAX) raiseRuntimeError(vb_error::kOverflow);
    allocateSpacePublic(static_cast<int32_t>(grown), true, false);
  }
  rows_[static_cast<std::size_t>(count_)] = Row{std::move(vsKey), std::move(voValue)};
  ++count_;
  return true;
}

void clsArrayStringObject::allocateSpacePublic(int32_t vlSize, bool vbPreserveValues,
                                               bool vbResetCountVariable) {
  if (vlSize < 0) raiseRuntimeError(vb_error::kSubscriptOutOfRange);
  const auto slots = static_cast<std::size_t>(vlSize) + 1;
  try {
    if (vbPreserveValues) {
      rows_.resize(slots);
    } else {
      std::vector<Row> fresh(slots);
      rows_.swap(fresh);
    }
  } catch (const std::bad_alloc&) {
    raiseRuntimeError(vb_error::kOutOfMemory);
  } catch (const std::length_error&) {
    raiseRuntimeError(vb_error::kOutOfMemory);
  }
  slotCount_ = vlSize;
  if (vbResetCountVariable) {
    count_ = 0;
  } else if (count_ > vlSize) {
    count_ = vlSize;
  }
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
  for (int32_t i = count_ - 1; i >= 0; --i) {
    if (rows_[static_cast<std::size_t>(i)].key == vsKey) return i;
  }
  return -1;
}

ObjectRef clsArrayStringObject::find(StringView vsKey) const {
  const int32_t index = ItemIndex(vsKey);
  return index < 0 ? nullptr : rows_[static_cast<std::size_t>(index)].value;
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

bool clsArrayStringObject::remove(int32_t vlIndex) {
  if (vlIndex < 0 || vlIndex >= count_) return false;
  const auto first = rows_.begin() + vlIndex;
  // Copied, not moved: the last used slot keeps its object after the count drops below it.
  std::copy(first + 1, rows_.begin() + count_, first);
  return removeLast();
}

bool clsArrayStringObject::removeLast() {
  if (count_ < 1) return false;
  --count_;
  return true;
}

ClassInfo clsArrayStringObject::describe() {
  using Self = clsArrayStringObject;
  return ClassBuilder<Self>(kClassName)
      .method(u"add", &Self::add, {u"vsKey", u"voValue"})
      .method(u"allocateSpacePublic",
              [](Self& self, int32_t size, bool& preserveValues, bool& resetCount) {
                self.allocateSpacePublic(size, preserveValues, resetCount);
              },
              {u"vlSize", optional(u"vbPreserveValues", true),
               optional(u"vbResetCountVariable", false)})
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
