#include <ravelin/containers/container_catalogue.hpp>

namespace ravelin {

void registerCollections(ClassRegistry& registry) {
  (void)registry;
}

}  // namespace ravelin
