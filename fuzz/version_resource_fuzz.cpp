// Reads arbitrary bytes as a Windows executable's version block. The sanitizers catch a read
// outside the input; the checks here, a result the reader could not have found in it: fixed
// information without a size or without its signature, or a resource larger than the input.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <ravelin/platform/pe_version_reader.hpp>
#include <span>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using ravelin::platform::VersionResource;
  const VersionResource resource =
      ravelin::platform::readPeVersionResource(std::span<const uint8_t>(data, size));
  if (resource.size == 0) {
    if (resource.fixedInfo) std::abort();
    return 0;
  }
  // The size is twice the resource plus 4 bytes, and the resource lies in the input.
  if (resource.size < 6 || resource.size % 2 != 0 || (resource.size - 4) / 2 > size) std::abort();
  if (resource.fixedInfo) {
    if ((*resource.fixedInfo)[0] != ravelin::platform::kFixedFileInfoSignature) std::abort();
    if ((resource.size - 4) / 2 < 92) std::abort();
  }
  return 0;
}
