#include <cmath>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/size_limits.hpp>

namespace ravelin {

void checkTextLength(std::size_t length) {
  if (length > kMaxTextLength) raiseRuntimeError(vb_error::kOutOfStringSpace);
}

void checkArrayElements(std::size_t count) {
  if (count > kMaxArrayElements) raiseRuntimeError(vb_error::kOutOfMemory);
}

void checkMemberValue(const Variant& value) {
  switch (value.type()) {
    case VarType::Double:
      if (!std::isfinite(value.asDouble())) raiseRuntimeError(vb_error::kOverflow);
      break;
    case VarType::Single:
      if (!std::isfinite(value.asSingle())) raiseRuntimeError(vb_error::kOverflow);
      break;
    case VarType::String:
      checkTextLength(value.asString().size());
      break;
    case VarType::Array:
      checkArrayElements(value.asArray().elements.size());
      break;
    default:
      break;
  }
}

}  // namespace ravelin
