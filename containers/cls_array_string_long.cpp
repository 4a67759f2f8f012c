#include <ravelin/containers/cls_array_string_long.hpp>
#include <ravelin/frame/class_builder.hpp>
#include <utility>

namespace ravelin {
namespace {

constexpr StringView kOpItem = u".item()";
constexpr StringView kOpGetItemLong = u".getItemLong()";
constexpr StringView kOpGetItemString = u".getItemString()";
constexpr StringView kOpSetItemLong = u".setItemLong()";
constexpr StringView kOpSetItemString = u".setItemString()";

}  // namespace

udtStringLong& clsArrayStringLong::usedRow(int16_t index, StringView operation) {
  if (!rows_.isUsed(index)) raiseStyleA(CCEC_InvalidIndex, kClassName, operation);
  return rows_.at(index);
}

const udtStringLong& clsArrayStringLong::usedRow(int16_t index, StringView operation) const {
  if (!rows_.isUsed(index)) raiseStyleA(CCEC_InvalidIndex, kClassName, operation);
  return rows_.at(index);
}

bool clsArrayStringLong::add(String vsValue, int32_t vlValue) {
  return rows_.tryAdd(udtStringLong{std::move(vsValue), vlValue});
}

int16_t clsArrayStringLong::addSortAscByKey(String vsValue, int32_t vlValue) {
  // The new pair lands above the last row whose key is less than or equal to it, so equal keys
  // keep their order of arrival; the rows with greater keys move up one place.
  auto at = rows_.getCount();
  while (at > 0 && rows_.at(at - 1).lValue > vlValue)
    --at;
  try {
    rows_.insert(at, udtStringLong{std::move(vsValue), vlValue});
  } catch (const AutomationError&) {
    return -1;
  }
  return at;
}

int16_t clsArrayStringLong::findKey(int32_t vlKey, bool vbStartAtEnd) const {
  const int32_t count = rows_.getCount();
  if (vbStartAtEnd) {
    for (int32_t i = count - 1; i >= 0; --i) {
      if (rows_.at(i).lValue == vlKey) return static_cast<int16_t>(i);
    }
  } else {
    for (int32_t i = 0; i < count; ++i) {
      if (rows_.at(i).lValue == vlKey) return static_cast<int16_t>(i);
    }
  }
  return -1;
}

udtStringLong clsArrayStringLong::getItem(int16_t viIndex) const {
  return usedRow(viIndex, kOpItem);
}

int32_t clsArrayStringLong::getItemLong(int16_t viIndex) const {
  return usedRow(viIndex, kOpGetItemLong).lValue;
}

String clsArrayStringLong::getItemString(int16_t viIndex) const {
  return usedRow(viIndex, kOpGetItemString).sValue;
}

void clsArrayStringLong::setItem(udtStringLong vudtValue, int16_t viIndex) {
  usedRow(viIndex, kOpItem) = std::move(vudtValue);
}

void clsArrayStringLong::setItemLong(int32_t vlValue, int16_t viIndex) {
  usedRow(viIndex, kOpSetItemLong).lValue = vlValue;
}

void clsArrayStringLong::setItemString(String vsValue, int16_t viIndex) {
  usedRow(viIndex, kOpSetItemString).sValue = std::move(vsValue);
}

ClassInfo clsArrayStringLong::describe() {
  using Self = clsArrayStringLong;
  ClassBuilder<Self> builder(kClassName);
  return publishCopyInterface(builder)
      .method(u"add", &Self::add, {u"vsValue", u"vlValue"})
      .method(u"addSortAscByKey", &Self::addSortAscByKey, {u"vsValue", u"vlValue"})
      .method(u"findKey", &Self::findKey, {u"vlKey", u"vbStartAtEnd"})
      .method(u"setArraySizeWithEmptyValues", &Self::setArraySizeWithEmptyValues, {u"viCount"})
      .method(u"getItem", &Self::getItem, {u"viIndex"})
      .method(u"getItemLong", &Self::getItemLong, {u"viIndex"})
      .method(u"getItemString", &Self::getItemString, {u"viIndex"})
      .method(u"removeItem", &Self::removeItem, {u"viIndex"})
      .method(u"removeLastItem", &Self::removeLastItem)
      .method(u"setItem", &Self::setItem, {u"vudtValue", u"viIndex"})
      .method(u"setItemLong", &Self::setItemLong, {u"vlValue", u"viIndex"})
      .method(u"setItemString", &Self::setItemString, {u"vsValue", u"viIndex"})
      .method(u"getCount", &Self::getCount)
      .method(u"getSlotCount", &Self::getSlotCount)
      .method(u"setSlotIncrement", &Self::setSlotIncrement, {u"viValue"})
      .build();
}

}  // namespace ravelin
