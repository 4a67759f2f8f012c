// A folder system for tests: every folder set by hand.
#pragma once

#include <map>
#include <ravelin/platform/fake/scoped_fake.hpp>
#include <ravelin/platform/folders.hpp>

namespace ravelin::platform {

// Knows no special folder until one is set; the system and temporary folders are given through
// the same buffer protocol as the native calls.
class FakeFolderSystem : public FolderSystem {
 public:
  void setSpecialFolder(SpecialFolder folder, String path) { special_[folder] = std::move(path); }
  void removeSpecialFolder(SpecialFolder folder) { special_.erase(folder); }
  void setSystemDirectory(String path) { system_ = std::move(path); }
  void setTempPath(String path) { temp_ = std::move(path); }
  void setLibraryFolder(String path) { library_ = std::move(path); }

  std::optional<String> specialFolder(SpecialFolder folder) const override;
  FolderCall systemDirectory(uint32_t bufferSize) const override;
  FolderCall tempPath(uint32_t bufferSize) const override;
  String libraryFolder() const override { return library_; }

 private:
  std::map<SpecialFolder, String> special_;
  String system_ = u"C:\\Windows\\system32";
  String temp_ = u"C:\\Temp\\";
  String library_ = u"C:\\Program Files\\Ravelin";
};

}  // namespace ravelin::platform
