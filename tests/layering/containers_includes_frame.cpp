// Compiled as part of the containers layer: a header of a lower layer is in reach.
#include <ravelin/frame/variant.hpp>

int layeringProbeDownward() {
  return ravelin::Variant(1).isEmpty() ? 0 : 1;
}
