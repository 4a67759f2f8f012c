#include <ravelin/frame/object_copy.hpp>

namespace ravelin {

using namespace copy_operation;

void RefusingCopyObject::copyObject(const IObjectRef& /*voObjectToCopy*/, int32_t /*vlCopyWhat*/) {
  raiseStyleA(CCEC_FeatureNotImplemented, classId_, kInterfaceCopyObject);
}

void RefusingCopyObject::copyToObject(const IObjectRef& /*voCopyTo*/, int32_t /*vlCopyWhat*/) {
  raiseStyleA(CCEC_FeatureNotImplemented, classId_, kInterfaceCopyToObject);
}

IObjectRef RefusingCopyObject::generateCopy(int32_t /*vlCopyWhat*/) {
  raiseStyleA(CCEC_FeatureNotImplemented, classId_, kInterfaceGenerateCopy);
}

void UnsupportedCopyObject::copyObject(const IObjectRef& /*voObjectToCopy*/,
                                       int32_t /*vlCopyWhat*/) {
  raiseStyleC(CCEC_FeatureNotImplemented, classId_, kCopyObject);
}

void UnsupportedCopyObject::copyToObject(const IObjectRef& /*voCopyTo*/, int32_t /*vlCopyWhat*/) {
  raiseStyleC(CCEC_FeatureNotImplemented, classId_, kCopyToObject);
}

IObjectRef UnsupportedCopyObject::generateCopy(int32_t /*vlCopyWhat*/) {
  raiseStyleC(CCEC_FeatureNotImplemented, classId_, kGenerateCopy);
}

Variant UnsupportedCopyObject::getParameterValue(StringView /*vsParameterName*/) {
  raiseStyleC(CCEC_FeatureNotImplemented, classId_, kGetParameterValue);
}

ClassInfo IObject::describe() {
  ClassBuilder<IObject> builder(kClassName, false);
  return publishCopyInterface(builder).build();
}

}  // namespace ravelin
