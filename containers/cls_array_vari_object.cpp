#include <ravelin/containers/cls_array_vari_object.hpp>
#include <ravelin/frame/class_builder.hpp>
#include <utility>

namespace ravelin {
namespace {

constexpr StringView kOpGetItem = u".getItem()";
constexpr StringView kOpGetItemObject = u".getItemObject()";
constexpr StringView kOpGetItemVariant = u".getItemVariant()";
constexpr StringView kOpSetItem = u".setItem()";
constexpr StringView kOpSetItemVariant = u".setItemVariant()";
constexpr StringView kOpSetItemObject = u".setItemObject()";

// The value's code as VarType reports it (8204 for an array of Variant, not just the flag).
VarType typeCodeOf(const Variant& value) {
  return static_cast<VarType>(value.varTypeCode());
}

}  // namespace

udtVariObject& clsArrayVariObject::usedRow(int16_t index, StringView operation) {
  if (!rows_.isUsed(index)) raiseStyleA(CCEC_InvalidIndex, kClassName, operation);
  return rows_.at(index);
}

const udtVariObject& clsArrayVariObject::usedRow(int16_t index, StringView operation) const {
  if (!rows_.isUsed(index)) raiseStyleA(CCEC_InvalidIndex, kClassName, operation);
  return rows_.at(index);
}

bool clsArrayVariObject::add(Variant vvntValue, ObjectRef voValue) {
  const VarType type = typeCodeOf(vvntValue);
  return rows_.tryAdd(udtVariObject{type, std::move(vvntValue), std::move(voValue)});
}

udtVariObject clsArrayVariObject::getItem(int16_t viIndex) const {
  return usedRow(viIndex, kOpGetItem);
}

ObjectRef clsArrayVariObject::getItemObject(int16_t viIndex) const {
  return usedRow(viIndex, kOpGetItemObject).oValue;
}

Variant clsArrayVariObject::getItemVariant(int16_t viIndex) const {
  return usedRow(viIndex, kOpGetItemVariant).vntValue;
}

void clsArrayVariObject::setItem(udtVariObject vudtValue, int16_t viIndex) {
  usedRow(viIndex, kOpSetItem) = std::move(vudtValue);
}

void clsArrayVariObject::setItemVariant(Variant vvntValue, int16_t viIndex) {
  udtVariObject& row = usedRow(viIndex, kOpSetItemVariant);
  row.eVntValueType = typeCodeOf(vvntValue);
  row.vntValue = std::move(vvntValue);
}

void clsArrayVariObject::setItemObject(ObjectRef voValue, int16_t viIndex) {
  usedRow(viIndex, kOpSetItemObject).oValue = std::move(voValue);
}

ClassInfo clsArrayVariObject::describe() {
  using Self = clsArrayVariObject;
  ClassBuilder<Self> builder(kClassName);
  return publishCopyInterface(builder)
      .method(u"add", &Self::add, {u"vvntValue", u"voValue"})
      .method(u"setArraySizeWithEmptyValues", &Self::setArraySizeWithEmptyValues, {u"viCount"})
      .method(u"getItem", &Self::getItem, {u"viIndex"})
      .method(u"getItemObject", &Self::getItemObject, {u"viIndex"})
      .method(u"getItemVariant", &Self::getItemVariant, {u"viIndex"})
      .method(u"removeItem", &Self::removeItem, {u"viIndex"})
      .method(u"removeLastItem", &Self::removeLastItem)
      .method(u"setItem", &Self::setItem, {u"vudtValue", u"viIndex"})
      .method(u"setItemVariant", &Self::setItemVariant, {u"vvntValue", u"viIndex"})
      .method(u"setItemObject", &Self::setItemObject, {u"voValue", u"viIndex"})
      .method(u"getCount", &Self::getCount)
      .method(u"getSlotCount", &Self::getSlotCount)
      .method(u"setSlotIncrement", &Self::setSlotIncrement, {u"viValue"})
      .build();
}

}  // namespace ravelin
