#include <ravelin/containers/container_catalogue.hpp>

namespace ravelin {

void registerPairArrays(ClassRegistry& registry) {
  (void)registry;
}

}  // namespace ravelin
