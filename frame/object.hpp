// The automation object base: every public class of the library derives from it.
#pragma once

#include <memory>

#include <ravelin/frame/text.hpp>

namespace ravelin {

class Object : public std::enable_shared_from_this<Object> {
 public:
  virtual ~Object() = default;

  // The class name as the runtime's TypeName reports it ("clsArrayLong").
  virtual StringView className() const = 0;

 protected:
  Object() = default;
  Object(const Object&) = default;
  Object& operator=(const Object&) = default;
};

// A shared reference to an automation object; an empty reference is Nothing.
using ObjectRef = std::shared_ptr<Object>;

}  // namespace ravelin
