#include <ravelin/containers/cls_array_string2.hpp>
#include <ravelin/containers/cls_array_string_long.hpp>
#include <ravelin/containers/cls_array_string_object.hpp>
#include <ravelin/containers/cls_array_vari_object.hpp>
#include <ravelin/containers/internal/container_catalogue.hpp>

namespace ravelin {

void registerPairArrays(ClassRegistry& registry) {
  registry.addClass(clsArrayString2::describe());
  registry.addClass(clsArrayStringLong::describe());
  registry.addClass(clsArrayStringObject::describe());
  registry.addClass(clsArrayVariObject::describe());
}

}  // namespace ravelin
