#include <ravelin/containers/cls_array_any_object.hpp>
#include <ravelin/containers/cls_array_object.hpp>
#include <ravelin/containers/cls_array_object2.hpp>
#include <ravelin/containers/cls_larray_double.hpp>
#include <ravelin/containers/cls_larray_double2.hpp>
#include <ravelin/containers/cls_larray_long_object.hpp>
#include <ravelin/containers/cls_larray_object.hpp>
#include <ravelin/containers/internal/container_catalogue.hpp>

namespace ravelin {

void registerObjectArrays(ClassRegistry& registry) {
  registry.addClass(clsLArrayObject::describe());
  registry.addClass(clsLArrayDouble::describe());
  registry.addClass(clsLArrayDouble2::describe());
  registry.addClass(clsLArrayLongObject::describe());
  registry.addClass(clsArrayObject::describe());
  registry.addClass(clsArrayAnyObject::describe());
  registry.addClass(clsArrayObject2::describe());
}

}  // namespace ravelin
