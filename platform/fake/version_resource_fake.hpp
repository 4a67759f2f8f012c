// In-memory version resources for tests: the block each file has is set by hand.
#pragma once

#include <filesystem>
#include <map>
#include <mutex>
#include <ravelin/platform/fake/scoped_fake.hpp>
#include <ravelin/platform/version_resource.hpp>
#include <vector>

namespace ravelin::platform {

// Files are told apart by their path as given (no normalisation); a path never set has no block.
// Every path read is recorded, so that a test can see which file its caller asked about.
class FakeVersionResources : public VersionResources {
 public:
  // The block `file` has from now on.
  void set(std::filesystem::path file, VersionResource resource);
  // A file whose block is `fixedInfo`, with the size a resource of `resourceSize` bytes reports.
  void setFixedInfo(std::filesystem::path file, const FixedFileInfo& fixedInfo,
                    uint32_t resourceSize = 868);
  void remove(const std::filesystem::path& file);

  VersionResource read(const std::filesystem::path& file) const override;

  // The paths read so far, in order.
  std::vector<std::filesystem::path> reads() const;

 private:
  mutable std::mutex mutex_;
  std::map<std::filesystem::path, VersionResource> files_;
  mutable std::vector<std::filesystem::path> reads_;
};

}  // namespace ravelin::platform
