// Version resources on POSIX systems, which have no version library: the block is read from the
// file's bytes.
#include <ravelin/platform/pe_version_reader.hpp>
#include <ravelin/platform/version_resource.hpp>

namespace ravelin::platform {
namespace {

class PortableVersionResources final : public VersionResources {
 public:
  VersionResource read(const std::filesystem::path& file) const override {
    return readPeVersionResource(file);
  }
};

}  // namespace

std::unique_ptr<VersionResources> VersionResources::makeNative() {
  return std::make_unique<PortableVersionResources>();
}

}  // namespace ravelin::platform
