// Compiled as part of the containers layer: the text layer sits above it, so its header is out of
// reach and this file must not compile.
#include <ravelin/text/string_functions.hpp>

int layeringProbeUpward() {
  return 0;
}
