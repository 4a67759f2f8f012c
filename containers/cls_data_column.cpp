#include <memory>
#include <ravelin/containers/cls_data_column.hpp>
#include <ravelin/frame/error.hpp>

namespace ravelin {

void clsDataColumn::copyObject(const IObjectRef& voObjectToCopy, int32_t /*vlCopyWhat*/) {
  const auto source = copySourceAs<clsDataColumn>(voObjectToCopy);
  setColumnId(source->getColumnId());
  setDataType(source->getDataType());
  setDataTypeCompatible(source->getDataTypeCompatible());
  setDefaultValue(source->getDefaultValue());
  setDisplayName(source->getDisplayName());
  setFormat(source->getFormat());
}

void clsDataColumn::copyToObject(const IObjectRef& voCopyTo, int32_t /*vlCopyWhat*/) {
  if (!voCopyTo) raiseRuntimeError(vb_error::kObjectNotSet);
  voCopyTo->copyObject(std::static_pointer_cast<IObject>(shared_from_this()), -1);
}

IObjectRef clsDataColumn::generateCopy(int32_t /*vlCopyWhat*/) {
  auto copy = makeObject<clsDataColumn>();
  copy->copyObject(std::static_pointer_cast<IObject>(shared_from_this()), -1);
  return copy;
}

Variant clsDataColumn::getParameterValue(StringView /*vsParameterName*/) {
  raiseError(CCEC_FeatureNotImplemented, String(kClassName), u"IObject_getParameterValue");
}

ClassInfo clsDataColumn::describe() {
  ClassBuilder<clsDataColumn> builder(kClassName);
  return publishCopyInterface(builder)
      .method(u"getDataType", &clsDataColumn::getDataType)
      .method(u"setDataType", &clsDataColumn::setDataType, {u"veValue"})
      .method(u"getDataTypeCompatible", &clsDataColumn::getDataTypeCompatible)
      .method(u"setDataTypeCompatible", &clsDataColumn::setDataTypeCompatible, {u"vlValue"})
      .method(u"getColumnId", &clsDataColumn::getColumnId)
      .method(u"setColumnId", &clsDataColumn::setColumnId, {u"vsValue"})
      .method(u"getDisplayName", &clsDataColumn::getDisplayName)
      .method(u"setDisplayName", &clsDataColumn::setDisplayName, {u"vsValue"})
      .method(u"getDefaultValue", &clsDataColumn::getDefaultValue)
      .method(u"setDefaultValue", &clsDataColumn::setDefaultValue, {u"vsValue"})
      .method(u"getFormat", &clsDataColumn::getFormat)
      .method(u"setFormat", &clsDataColumn::setFormat, {u"vsValue"})
      .build();
}

}  // namespace ravelin
