#include <ravelin/platform/fake/folders_fake.hpp>

namespace ravelin::platform {
namespace {

FolderCall copiedToBuffer(const String& text, uint32_t bufferSize) {
  if (text.size() + 1 > bufferSize) return {static_cast<uint32_t>(text.size() + 1), {}};
  return {static_cast<uint32_t>(text.size()), text};
}

}  // namespace

std::optional<String> FakeFolderSystem::specialFolder(SpecialFolder folder) const {
  const auto found = special_.find(folder);
  if (found == special_.end()) return std::nullopt;
  return found->second;
}

FolderCall FakeFolderSystem::systemDirectory(uint32_t bufferSize) const {
  return copiedToBuffer(system_, bufferSize);
}

FolderCall FakeFolderSystem::tempPath(uint32_t bufferSize) const {
  return copiedToBuffer(temp_, bufferSize);
}

}  // namespace ravelin::platform
