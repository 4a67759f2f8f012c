#include <ravelin/frame/error.hpp>
#include <ravelin/frame/size_limits.hpp>

namespace ravelin {

void checkTextLength(std::size_t length) {
  if (length > kMaxTextLength) raiseRuntimeError(vb_error::kOutOfStringSpace);
}

void checkArrayElements(std::size_t count) {
  if (count > kMaxArrayElements) raiseRuntimeError(vb_error::kOutOfMemory);
}

}  // namespace ravelin
