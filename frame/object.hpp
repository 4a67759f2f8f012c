// The automation object base: every public class of the library derives from it, through
// PublicClass (public_class.hpp).
#pragma once

#include <memory>
#include <ravelin/base/text.hpp>
#include <ravelin/frame/deferred_release.hpp>
#include <type_traits>
#include <utility>
#include <vector>

namespace ravelin {

class ClassInfo;
class Variant;

class Object : public std::enable_shared_from_this<Object> {
 public:
  virtual ~Object() = default;

  // The table of the object's class: its name and the members late-bound callers reach. Every
  // object of a class answers the same table (PublicClass in public_class.hpp supplies it).
  virtual const ClassInfo& classInfo() const = 0;

  // The class name as the runtime's TypeName reports it ("clsArrayLong"): the table's name.
  StringView className() const;

  // For Each over the object: a collection fills `items` with its elements in order (a snapshot
  // taken when the loop starts) and returns true; any other object returns false, which a script
  // sees as error 451 "Object not a collection".
  virtual bool enumerate(std::vector<Variant>& items) const {
    (void)items;
    return false;
  }

 protected:
  Object() = default;
  Object(const Object&) = default;
  Object& operator=(const Object&) = default;
};

// A shared reference to an automation object; an empty reference is Nothing.
using ObjectRef = std::shared_ptr<Object>;

// A new object of class C, as every library and host object is made: its last release never
// destroys a chain of objects it holds by recursion (deferred_release.hpp).
template <typename C, typename... A>
std::shared_ptr<C> makeObject(A&&... arguments) {
  static_assert(std::is_base_of_v<Object, C>, "makeObject makes automation objects");
  return makeDeferredShared<C>(std::forward<A>(arguments)...);
}

}  // namespace ravelin
