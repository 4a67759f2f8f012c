// An in-memory profile system for tests: INI files held as byte strings, read and edited by the
// same engine as the Linux implementation, so a caller's tests see exactly the system's answers.
#pragma once

#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <ravelin/platform/fake/scoped_fake.hpp>
#include <ravelin/platform/profile.hpp>
#include <set>
#include <string>

namespace ravelin::platform {

// Files and folders are known by their path as given, made lexically normal; a bare name is a
// file of profileFolder(), a folder that always exists here (the Windows directory does). A
// write needs its folder: one added, the folder of a file put in place, or the profile folder.
class FakeProfileSystem : public ProfileSystem {
 public:
  void addFolder(const std::filesystem::path& folder);
  // Puts a file in place with these bytes (and its folder).
  void setFile(const std::filesystem::path& file, std::string bytes);
  void removeFile(const std::filesystem::path& file);
  // The file's bytes, nullopt when there is no such file.
  std::optional<std::string> file(const std::filesystem::path& file) const;
  // Makes every call on the file fail with `error` (kSharingViolation as for a file that another
  // program holds, kAccessDenied for a read-only one); kNone lets calls through again.
  void setFailure(const std::filesystem::path& file, uint32_t error);

  ProfileRead getString(std::optional<std::string_view> section,
                        std::optional<std::string_view> key,
                        std::optional<std::string_view> defaultValue, uint32_t size,
                        const std::filesystem::path& file) override;
  ProfileWrite writeString(std::optional<std::string_view> section,
                           std::optional<std::string_view> key,
                           std::optional<std::string_view> value,
                           const std::filesystem::path& file) override;

 private:
  // The file's key, empty for a name that names no file.
  static std::string keyOf(const std::filesystem::path& file);
  bool folderExists(const std::string& folder) const;

  mutable std::mutex mutex_;
  std::map<std::string, std::string> files_;
  std::set<std::string> folders_;
  std::map<std::string, uint32_t> failures_;
};

}  // namespace ravelin::platform
