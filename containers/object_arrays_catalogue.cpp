#include <ravelin/containers/container_catalogue.hpp>

namespace ravelin {

void registerObjectArrays(ClassRegistry& registry) {
  (void)registry;
}

}  // namespace ravelin
