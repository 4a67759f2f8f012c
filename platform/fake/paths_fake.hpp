// A path system for tests: a drive map, a mount table and a current folder set by hand.
#pragma once

#include <ravelin/platform/fake/scoped_fake.hpp>
#include <ravelin/platform/paths.hpp>
#include <string>
#include <utility>

namespace ravelin::platform {

// Starts with "C:" standing for "/", no mounts and "/" as the current folder. Where paths have a
// second form (not on Windows), nativePath translates by these facts while the fake is in place.
class FakePathSystem : public PathSystem {
 public:
  // Maps a drive ("D:", upper case) to a folder, or replaces its folder.
  void setDrive(const std::string& letter, std::string folder) {
    drives_[letter] = std::move(folder);
  }
  void removeDrive(const std::string& letter) { drives_.erase(letter); }
  void addMount(Mount mount) { mounts_.push_back(std::move(mount)); }
  void setCurrentFolder(std::filesystem::path folder) { current_ = std::move(folder); }

  DriveMap driveMap() const override { return drives_; }
  std::vector<Mount> mounts() const override { return mounts_; }
  std::filesystem::path currentFolder() const override { return current_; }

 private:
  DriveMap drives_{{"C:", "/"}};
  std::vector<Mount> mounts_;
  std::filesystem::path current_{"/"};
};

}  // namespace ravelin::platform
