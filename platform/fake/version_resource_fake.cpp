// The in-memory version resources.
#include <ravelin/platform/fake/version_resource_fake.hpp>
#include <ravelin/platform/pe_version_reader.hpp>
#include <utility>

namespace ravelin::platform {

void FakeVersionResources::set(std::filesystem::path file, VersionResource resource) {
  std::lock_guard lock(mutex_);
  files_[std::move(file)] = resource;
}

void FakeVersionResources::setFixedInfo(std::filesystem::path file, const FixedFileInfo& fixedInfo,
                                        uint32_t resourceSize) {
  set(std::move(file), VersionResource{versionBufferSize(resourceSize), fixedInfo});
}

void FakeVersionResources::remove(const std::filesystem::path& file) {
  std::lock_guard lock(mutex_);
  files_.erase(file);
}

VersionResource FakeVersionResources::read(const std::filesystem::path& file) const {
  std::lock_guard lock(mutex_);
  reads_.push_back(file);
  const auto it = files_.find(file);
  return it == files_.end() ? VersionResource{} : it->second;
}

std::vector<std::filesystem::path> FakeVersionResources::reads() const {
  std::lock_guard lock(mutex_);
  return reads_;
}

}  // namespace ravelin::platform
